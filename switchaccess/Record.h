// Whole configuration records of the switch: read, change what is known, write back.
#ifndef SWITCHACCESS_RECORD_H
#define SWITCHACCESS_RECORD_H

#include "platform/switch_config.h"

#include <cimple/cimple.h>

#include <cstring>

namespace cimple
{

// The calls behind a kind of record; `element` is the port's number where a record belongs to a port.
inline int readRecord(std::int32_t, xpl_swSwitchConfig& record)
{
    return xpl_swSwitchGetConfig(hSwitch, 0, &record);
}
inline int writeRecord(std::int32_t, const xpl_swSwitchConfig& record)
{
    return xpl_swSwitchSetConfig(hSwitch, &record);
}
inline int readRecord(std::int32_t element, xpl_swPortConfig& record)
{
    return xpl_swPortGetConfig(hSwitch, element, 0, &record);
}
inline int writeRecord(std::int32_t element, const xpl_swPortConfig& record)
{
    return xpl_swPortSetConfig(hSwitch, element, &record);
}

// A record under change. Fields that nobody touches go back as they were read.
template <class RECORD>
class Record
{
  public:
    explicit Record(std::int32_t element = 0) : _element(element) {}

    // 0, or the platform's status.
    int read() { return readRecord(_element, _record); }
    int write() const { return writeRecord(_element, _record); }

    RECORD* operator->() { return &_record; }

  private:
    std::int32_t _element;
    RECORD _record{};
};

// Puts a text into a field of fixed size; false, and the field is left alone, when it does not fit.
template <std::size_t SIZE>
bool putText(char (&field)[SIZE], const String& text)
{
    if (text.size() >= SIZE)
        return false;
    std::memcpy(field, text.c_str(), text.size() + 1);
    return true;
}

// The number of bytes of a UTF-8 text that fit `limit` without cutting a character in two.
std::size_t fittingLength(const String& text, std::size_t limit);

// Puts as many whole characters of a text into a field as fit.
template <std::size_t SIZE>
void putTextCut(char (&field)[SIZE], const String& text)
{
    const std::size_t length = fittingLength(text, SIZE - 1);
    std::memcpy(field, text.c_str(), length);
    field[length] = '\0';
}

} // namespace cimple

#endif
