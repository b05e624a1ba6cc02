// Helper functions of the switch server: names of the switch and fabric, attached ports, batch results.
#ifndef PLATFORM_SWITCH_SERVER_H
#define PLATFORM_SWITCH_SERVER_H

#include "platform/xpl_sml.h"

// Texts are handed out in a cell: the value in the cell is freed with free(), then the cell itself is given
// back with xpl_libFreeMemory(). The value is null when the switch has no such text or cannot be asked; the
// cell is null only when memory ran out.

// The WWN of the local switch: 16 hexadecimal digits.
char** get_Local_Switch_World_Wide_Name();

// The WWN of the fabric's principal switch; no value while the fabric has none.
char** get_Principal_Switch_World_Wide_Name();

// Vital product data of the chassis and its planar (main board).
char** get_Switch_ChassisPartNum();
char** get_Switch_ChassisSerialNum();
char** get_Switch_PlanarPartNum();
// The brand that the switch is sold under, as in "Tarvel".
char** get_Switch_Brand_Name();

// The product that the switch is: fills all four cells, with the product's name, the name for display, the
// identifying (serial) number and the brand of the vendor.
void get_Product_Info(char*** name, char*** elementName, char*** identifyingNumber, char*** vendor);

// Bytes that an attached port's address text takes at most, terminator included.
constexpr std::size_t kAttachedPortAddressSize = 32;

// Walk the node ports attached to the switch with the given domain ID (decimal text). A non-zero result
// leaves the port's address text in `address` (kAttachedPortAddressSize bytes) and is passed as `previous` to
// find the next one; 0 ends the walk. Ports that log in or out during a walk do not disturb it.
int get_first_attached_port(const char* domainId, char* address);
int get_next_attached_port(const char* domainId, int previous, char* address);

// True when an entry of a batch has failed. XPL_NOT_AVAILABLE does not count: the attribute exists and has no
// value at present, and whether that matters is the caller's to judge. Written entries are judged alike: a
// caller that must know whether each write took effect looks for XPL_NOT_AVAILABLE itself.
bool isErrors(const xpl_smlEntry* entries, std::uint32_t count);

// Upper-cases an ASCII text in place and returns it.
char* toUpper(char* text);

#endif
