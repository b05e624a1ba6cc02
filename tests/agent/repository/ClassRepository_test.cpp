// Loading classes, finding fault with them, and paths of their instances. What they inherit is in tests/wire.
#include "agent/repository/ClassRepository.h"

#include "agent/repository/completion.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <string>

namespace cimd
{
namespace
{

TEST(ClassRepository, NamesFileLineClassAndReasonOfAnError)
{
    const struct
    {
        const char* declarations;
        const char* error;
    } rows[] = {
        {"<CLASS NAME='A'/>\n<CLASS NAME='a'/>", "x.xml:3: class a: declared twice"},
        {"<CLASS NAME='A' SUPERCLASS='B'/>", "x.xml:2: class A: superclass B is not declared before it"},
        {"<CLASS NAME='A'>\n<PROPERTY NAME='P' TYPE='int'/></CLASS>",
         "x.xml:3: class A: PROPERTY P: \"int\" is no CIM data type"},
        {"<CLASS NAME='A'><PROPERTY TYPE='uint8'/></CLASS>", "x.xml:2: class A: PROPERTY without NAME"},
        {"<CLASS NAME='A'><PROPERTY NAME='P' TYPE='uint8'><VALUE>256</VALUE></PROPERTY></CLASS>",
         "x.xml:2: class A: \"256\" is no uint8"},
        {"<CLASS NAME='A'><PROPERTY NAME='P' TYPE='uint8'/><PROPERTY NAME='p' "
         "TYPE='uint8'/></CLASS>",
         "x.xml:2: class A: property p is declared twice"},
        {"<CLASS NAME='A'><METHOD NAME='M' TYPE='uint8'/><METHOD NAME='m' TYPE='uint8'/></CLASS>",
         "x.xml:2: class A: method m is declared twice"},
        {"<CLASS NAME='A'><PROPERTY NAME='P' TYPE='uint8'/></CLASS>\n"
         "<CLASS NAME='B' SUPERCLASS='A'><PROPERTY NAME='P' TYPE='uint16'/></CLASS>",
         "x.xml:3: class B: property P is uint16 but uint8 in A"},
        {"<CLASS NAME='A'><PROPERTY.ARRAY NAME='P' TYPE='uint8' ARRAYSIZE='few'/></CLASS>",
         "x.xml:2: class A: ARRAYSIZE is \"few\", no number"},
        {"<CLASS NAME='A'><QUALIFIER NAME='Q' TYPE='boolean' TOSUBCLASS='maybe'/></CLASS>",
         "x.xml:2: class A: TOSUBCLASS is \"maybe\", neither true nor false"},
        {"<CLASS NAME='A'><INSTANCE/></CLASS>", "x.xml:2: class A: unexpected element INSTANCE"},
        {"<INSTANCE/>", "x.xml:2: unexpected element INSTANCE"},
        {"<CLASS NAME='A'>\n\n</CLAS>", "x.xml:4: not well-formed: Start-end tags mismatch"},
    };
    for (const auto& row : rows)
    {
        const std::string text = std::string("<CIM><DECLARATION><DECLGROUP>\n") + row.declarations +
                                 "\n</DECLGROUP></DECLARATION></CIM>";
        try
        {
            ClassRepository::parse(text, "x.xml");
            ADD_FAILURE() << "accepted: " << row.declarations;
        }
        catch (const RepositoryError& error)
        {
            EXPECT_STREQ(error.what(), row.error);
        }
    }
    EXPECT_THROW(ClassRepository::parse("<CIM/>", "x.xml"), RepositoryError);
    EXPECT_THROW(ClassRepository::load("/nowhere/x.xml"), RepositoryError);
}

TEST(Completion, MakesOnePathOfMany)
{
    const ClassInfo& link = *test::repository().find("Test_Link");
    ObjectPath inner({}, "test_widget");
    inner.setKey("NAME", CimValue::string("w1"));
    ObjectPath loose({}, "TEST_LINK");
    loose.setHost("client.example");
    loose.setKey("RIGHT", CimValue::reference(inner));
    inner.setHost("client.example");
    loose.setKey("left", CimValue::reference(inner));
    completePath(loose, link, test::repository(), "root/test");
    EXPECT_EQ(loose.text(),
              "root/test:Test_Link.Left=\"root/test:Test_Widget.Name=\\\"w1\\\"\",Right=\"root/"
              "test:Test_Widget.Name="
              "\\\"w1\\\"\"");

    // Somebody else's class stays as it is, apart from the namespace.
    const CimValue foreign = CimValue::reference(ObjectPath({}, "Other_Class"));
    PropertyDecl anything;
    anything.type = CimType::Reference;
    EXPECT_EQ(completeValue(foreign, anything, test::repository(), "root/test").asReference().text(),
              "root/test:Other_Class");
}

} // namespace
} // namespace cimd
