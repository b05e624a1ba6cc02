// The product that the local switch is.
#include "switchProviders/VRAX_Product_Provider.h"

#include "platform/switch_server.h"
#include "switchaccess/Switch_Brand.h"
#include "switchaccess/XPL_Mem.h"

namespace cimple
{

void VRAX_Product_Provider::build(Map_Writer<VRAX_Product>& map)
{
    Owned<VRAX_Product> product = make();
    char** cells[4] = {};
    get_Product_Info(&cells[0], &cells[1], &cells[2], &cells[3]);
    const XPL_Mem<char*> texts[] = {XPL_Mem<char*>(cells[0]),
                                    XPL_Mem<char*>(cells[1]),
                                    XPL_Mem<char*>(cells[2]),
                                    XPL_Mem<char*>(cells[3])};
    for (const XPL_Mem<char*>& text : texts)
        if (*text == nullptr)
            fail("get_Product_Info failed");

    product->Name.set(*texts[0]);
    product->ElementName.set(*texts[1]);
    product->IdentifyingNumber.set(*texts[2]);
    product->Vendor.set(manufacturerOf(*texts[3]));
    product->Version.set("0");
    add(map, product);
}

} // namespace cimple
