// The vital product data of the chassis.
#ifndef PLATFORM_VPD_H
#define PLATFORM_VPD_H

#include <cstddef>

// Bytes of the longest product name, terminator included.
constexpr std::size_t kVpdProductNameSize = 129;

class VPD_Client
{
  public:
    // Writes the product name, NUL-terminated and cut to sizeBytes - 1 characters, into `name`. The name may
    // end in blanks: the stored field has a fixed width. Returns 0, or an xpl_Status and `name` is left
    // alone.
    static int read_product_name(char* name, std::size_t sizeBytes);
};

#endif
