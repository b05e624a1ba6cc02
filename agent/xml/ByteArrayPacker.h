// Arrays of uint8 in an arriving message: kept as a byte a value instead of the eighteen of text and tags.
#ifndef AGENT_XML_BYTEARRAYPACKER_H
#define AGENT_XML_BYTEARRAYPACKER_H

#include <cstddef>
#include <string>
#include <string_view>

namespace cimd
{

// Shortens a message while it arrives, so that nobody ever holds the long form. In a VALUE.ARRAY that is
// declared as uint8 (PROPERTY.ARRAY TYPE, PARAMVALUE PARAMTYPE) the first values, as far as they are
// "<VALUE>" number "</VALUE>" with at most white space between them, become one packed run; whatever follows
// stays as it came. A run stands between two characters that XML does not allow, which the packed text has
// nowhere else. A text that is not UTF-8 is left alone. Line feeds are kept, so that lines can be counted.
class ByteArrayPacker
{
  public:
    // Appends the next part of the message to `text`, which is empty before the first. At most as much as
    // has arrived.
    void append(std::string& text, std::string_view part);

  private:
    enum class State
    {
        Text,
        Opening, // behind a "<" that may still begin anything
        Tag,
        Comment,
        CharacterData,
        Instruction,
        Values, // of an array of uint8
        Foreign // not UTF-8
    };

    void plain(std::string& text, char c);
    void opening(std::string_view token);
    void tag(std::string_view token);
    void value(std::string& text, char c);
    void openRun(std::string& text);
    void leaveValues(std::string& text);

    State _state = State::Text;
    std::size_t _tagAt = 0;  // where the markup that has begun starts in the text
    char _quote = '\0';      // of the attribute value that has begun
    bool _saysBytes = false; // the last tag declares an array of uint8
    bool _inRun = false;
    std::string _pending; // of the value that has begun
};

// A message that is there as a whole.
std::string packByteArrays(std::string_view message);

// A packed text with its values as elements again.
std::string unpackByteArrays(std::string_view text);

// The end of the packed run that starts at `at` (behind it; the end of the text if it is cut off), or `at` if
// none starts there.
std::size_t packedRunEnd(std::string_view text, std::size_t at);

// Whether a character belongs to the bounds of a run.
bool isRunMark(char c);

// Reads the values of a run. The text outlives the reader.
class PackedBytes
{
  public:
    // Of what an array's content begins with; there are none if that is no run.
    explicit PackedBytes(std::string_view content);

    // False after the last.
    bool next(unsigned char& value);

  private:
    std::string_view _rest;
};

} // namespace cimd

#endif
