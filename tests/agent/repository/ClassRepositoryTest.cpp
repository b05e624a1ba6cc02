// Loading classes, inheriting from them, and finding fault with them.
#include "agent/repository/ClassRepository.h"

#include "agent/repository/Completion.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace cimd
{
namespace
{

const ClassRepository& testRepository()
{
    static const ClassRepository repository = ClassRepository::load(test::repositoryFile());
    return repository;
}

template <class Decls>
std::string names(const Decls& decls)
{
    std::string text;
    for (const auto& decl : decls)
        text += (text.empty() ? "" : " ") + decl.name.str();
    return text;
}

const PropertyDecl& property(const ClassDecl& decl, const CimName& name)
{
    for (const PropertyDecl& candidate : decl.properties)
        if (candidate.name == name)
            return candidate;
    throw std::out_of_range(name.str());
}

TEST(ClassRepository, InheritsPropertiesInOrder)
{
    const ClassInfo& gadget = *testRepository().find("test_gadget");
    EXPECT_EQ(gadget.name().str(), "Test_Gadget");
    EXPECT_TRUE(gadget.isA("TEST_BASE"));
    EXPECT_FALSE(gadget.isA("Test_Sprocket"));
    EXPECT_EQ(gadget.properties().front()->name.str(), "Name");
    EXPECT_EQ(gadget.properties().back()->name.str(), "Size");
    // Declared again, U8 keeps its place and its origin but is the subclass' declaration.
    const std::size_t u8 = gadget.findProperty("u8").value();
    EXPECT_EQ(u8, gadget.superClass()->findProperty("U8").value());
    EXPECT_EQ(gadget.properties()[u8]->defaultValue, CimValue::uint8(7));
    EXPECT_EQ(gadget.properties()[u8]->classOrigin.str(), "Test_Widget");
    EXPECT_FALSE(gadget.findProperty("Weight"));
    ASSERT_EQ(gadget.keys().size(), 1U);
    EXPECT_TRUE(gadget.findMethod("RESET"));
    EXPECT_EQ(gadget.findMethod("echo")->classOrigin.str(), "Test_Widget");
    EXPECT_EQ(names(testRepository()
                        .find("Test_Compound")
                        ->describe({}, std::vector<CimName>{"when", "ID"})
                        .properties),
              "Id When");
}

TEST(ClassRepository, KnowsEmbeddedAndReferencedClasses)
{
    const ClassInfo& widget = *testRepository().find("Test_Widget");
    const auto at = [&](const char* name) { return *widget.properties()[widget.findProperty(name).value()]; };
    EXPECT_EQ(at("Part").type, CimType::Instance);
    EXPECT_EQ(at("Part").referenceClass.str(), "Test_Part");
    EXPECT_TRUE(at("Parts").isArray);
    EXPECT_EQ(at("Peer").referenceClass.str(), "Test_Base");
    EXPECT_EQ(at("Numbers").arraySize, 4U);
    EXPECT_EQ(widget.findMethod("MakePart")->returnType, CimType::Instance);
    const ParameterDecl& count = *widget.findMethod("Echo")->findParameter("count");
    EXPECT_TRUE(!count.isIn() && count.isOut());
    EXPECT_TRUE(widget.findMethod("Total")->isStatic());
    const ClassInfo& link = *testRepository().find("Test_StrongLink");
    EXPECT_TRUE(link.isAssociation()); // inherited
    EXPECT_EQ(link.references().size(), 2U);
    EXPECT_EQ(ClassRepository::family(*testRepository().find("Test_Base")).size(), 5U);
}

TEST(ClassRepository, ShowsAClassTheWayItIsAskedFor)
{
    const ClassInfo& gadget = *testRepository().find("Test_Gadget");
    const ClassDecl all = gadget.describe({false, true, true}, {});
    EXPECT_EQ(all.properties.size(), gadget.properties().size());
    EXPECT_FALSE(all.isAbstract()); // does not pass to subclasses
    EXPECT_TRUE(findQualifier(all.qualifiers, "Description")->propagated);
    const PropertyDecl& note = property(all, "Note");
    EXPECT_TRUE(note.propagated);
    EXPECT_EQ(note.classOrigin.str(), "Test_Base");
    EXPECT_FALSE(findQualifier(note.qualifiers, "Deprecated"));
    EXPECT_TRUE(findQualifier(note.qualifiers, "Description")->propagated);
    EXPECT_FALSE(property(all, "U8").propagated);

    const ClassDecl local = gadget.describe({true, true, false}, {});
    EXPECT_EQ(names(local.properties), "U8 Size");
    EXPECT_TRUE(local.methods.empty());
    EXPECT_TRUE(local.qualifiers.empty());
    EXPECT_TRUE(property(local, "U8").classOrigin.empty());

    const ClassDecl bare = testRepository().find("Test_Base")->describe({false, false, false}, {});
    EXPECT_TRUE(bare.qualifiers.empty() && bare.properties.front().qualifiers.empty());
    const ClassDecl base = testRepository().find("Test_Base")->describe({false, true, false}, {});
    EXPECT_TRUE(base.isAbstract());
    EXPECT_TRUE(findQualifier(property(base, "Note").qualifiers, "Deprecated"));
}

TEST(ClassRepository, NamesFileLineClassAndReasonOfAnError)
{
    struct Row
    {
        const char* declarations;
        const char* error;
    };
    const Row rows[] = {
        {"<CLASS NAME=\"A\"/>\n<CLASS NAME=\"a\"/>", "x.xml:3: class a: declared twice"},
        {"<CLASS NAME=\"A\" SUPERCLASS=\"B\"/>", "x.xml:2: class A: superclass B is not declared before it"},
        {"<CLASS NAME=\"A\">\n<PROPERTY NAME=\"P\" TYPE=\"int\"/></CLASS>",
         "x.xml:3: class A: PROPERTY P: \"int\" is no CIM data type"},
        {"<CLASS NAME=\"A\"><PROPERTY TYPE=\"uint8\"/></CLASS>", "x.xml:2: class A: PROPERTY without NAME"},
        {"<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>256</VALUE></PROPERTY></CLASS>",
         "x.xml:2: class A: \"256\" is no uint8"},
        {"<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"/><PROPERTY NAME=\"p\" "
         "TYPE=\"uint8\"/></CLASS>",
         "x.xml:2: class A: property p is declared twice"},
        {"<CLASS NAME=\"A\"><METHOD NAME=\"M\" TYPE=\"uint8\"/><METHOD NAME=\"m\" TYPE=\"uint8\"/></CLASS>",
         "x.xml:2: class A: method m is declared twice"},
        {"<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"/></CLASS>\n"
         "<CLASS NAME=\"B\" SUPERCLASS=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint16\"/></CLASS>",
         "x.xml:3: class B: property P is uint16 but uint8 in A"},
        {"<CLASS NAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\" ARRAYSIZE=\"few\"/></CLASS>",
         "x.xml:2: class A: ARRAYSIZE is \"few\", no number"},
        {"<CLASS NAME=\"A\"><QUALIFIER NAME=\"Q\" TYPE=\"boolean\" TOSUBCLASS=\"maybe\"/></CLASS>",
         "x.xml:2: class A: TOSUBCLASS is \"maybe\", neither true nor false"},
        {"<CLASS NAME=\"A\"><INSTANCE/></CLASS>", "x.xml:2: class A: unexpected element INSTANCE"},
        {"<INSTANCE/>", "x.xml:2: unexpected element INSTANCE"},
        {"<CLASS NAME=\"A\">\n\n</CLAS>", "x.xml:4: not well-formed: Start-end tags mismatch"},
    };
    for (const Row& row : rows)
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
    const ClassInfo& link = *testRepository().find("Test_Link");
    ObjectPath inner({}, "test_widget");
    inner.setKey("NAME", CimValue::string("w1"));
    ObjectPath loose({}, "TEST_LINK");
    loose.setHost("client.example");
    loose.setKey("RIGHT", CimValue::reference(inner));
    inner.setHost("client.example");
    loose.setKey("left", CimValue::reference(inner));
    completePath(loose, link, testRepository(), "root/test");
    EXPECT_EQ(loose.text(),
              "root/test:Test_Link.Left=\"root/test:Test_Widget.Name=\\\"w1\\\"\",Right=\"root/"
              "test:Test_Widget.Name="
              "\\\"w1\\\"\"");

    // Somebody else's class stays as it is, apart from the namespace.
    const CimValue foreign = CimValue::reference(ObjectPath({}, "Other_Class"));
    PropertyDecl anything;
    anything.type = CimType::Reference;
    EXPECT_EQ(completeValue(foreign, anything, testRepository(), "root/test").asReference().text(),
              "root/test:Other_Class");
}

} // namespace
} // namespace cimd
