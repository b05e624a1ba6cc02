// A small tokenizer that works on parts: it only has to know where an array of uint8 begins. What is not
// well-formed is passed on as it is, for the check behind it to find.
#include "agent/xml/ByteArrayPacker.h"

#include <algorithm>
#include <utility>

namespace cimd
{

namespace
{

constexpr char kRunStart = '\x01';
constexpr char kRunEnd = '\x02';
constexpr char kNotAllowed = '\x03';
constexpr char kEscape = '\x1b'; // the next value has its highest bit turned
constexpr char kTurned = '\x80';

constexpr std::string_view kComment = "<!--";
constexpr std::string_view kCharacterData = "<![CDATA[";
constexpr std::string_view kInstruction = "<?";
constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kValueStart = "<VALUE>";
constexpr std::string_view kValueEnd = "</VALUE>";
constexpr std::size_t kMostDigits = 3;
constexpr unsigned kMostValue = 255;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// What the reader of a run or of the markup around it would take for something else.
bool needsEscape(char c)
{
    constexpr std::string_view kSpecial("\0\x01\x02\x1b\r\n<>&", 9);
    return kSpecial.find(c) != std::string_view::npos;
}

std::string_view nameOf(std::string_view tag)
{
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

// Whether a start tag, given without its "<", makes an array in its element one of uint8.
bool declaresBytes(std::string_view tag)
{
    const std::string_view name = nameOf(tag);
    const std::string_view wanted = name == "PROPERTY.ARRAY" ? "TYPE"
                                    : name == "PARAMVALUE"   ? "PARAMTYPE"
                                                             : std::string_view();
    if (wanted.empty())
        return false;
    const auto skipSpace = [&tag] { tag.remove_prefix(std::min(tag.find_first_not_of(kSpace), tag.size())); };
    tag.remove_prefix(name.size());
    for (skipSpace(); !tag.empty(); skipSpace())
    {
        const std::string_view attribute = tag.substr(0, tag.find_first_of(" \t\r\n=/>"));
        tag.remove_prefix(attribute.size());
        skipSpace();
        if (attribute.empty() || tag.empty() || tag.front() != '=')
            return false;
        tag.remove_prefix(1);
        skipSpace();
        const std::size_t end = tag.empty() ? std::string_view::npos : tag.find(tag.front(), 1);
        if (end == std::string_view::npos)
            return false;
        if (attribute == wanted)
            return tag.substr(1, end - 1) == "uint8";
        tag.remove_prefix(end + 1);
    }
    return false;
}

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

// Whether `c` goes on with what has begun as "<VALUE>", up to three digits, "</VALUE>".
bool continuesValue(std::string_view begun, char c)
{
    if (begun.size() < kValueStart.size())
        return c == kValueStart[begun.size()];
    begun.remove_prefix(kValueStart.size());
    const std::size_t digits = std::min(begun.find('<'), begun.size());
    if (digits == begun.size())
        return isDigit(c) ? digits < kMostDigits : digits != 0 && c == '<';
    return c == kValueEnd[begun.size() - digits];
}

} // namespace

void ByteArrayPacker::append(std::string& text, std::string_view part)
{
    if (text.empty() && !part.empty() && (part.front() == '\xFE' || part.front() == '\xFF'))
        _state = State::Foreign; // the byte order mark of UTF-16
    for (const char c : part)
    {
        if (c == '\0' && _state != State::Foreign) // UTF-16 without a mark, or an error
        {
            leaveValues(text);
            _state = State::Foreign;
        }
        if (_state == State::Values)
            value(text, c);
        else
            plain(text, c);
    }
}

// A character that stays as it is.
void ByteArrayPacker::plain(std::string& text, char c)
{
    if (_state == State::Foreign)
    {
        text += c;
        return;
    }
    text += isRunMark(c) ? kNotAllowed : c;
    const std::string_view token = std::string_view(text).substr(_tagAt);
    const auto closedBy = [&](std::string_view opening, std::string_view closing)
    { return c == '>' && token.size() >= opening.size() + closing.size() && endsWith(token, closing); };
    bool isOver = false;
    switch (_state)
    {
    case State::Text:
        if (c == '<')
        {
            _state = State::Opening;
            _tagAt = text.size() - 1;
        }
        break;
    case State::Opening:
        opening(token);
        break;
    case State::Tag:
        tag(token);
        break;
    case State::Comment:
        isOver = closedBy(kComment, "-->");
        break;
    case State::CharacterData:
        isOver = closedBy(kCharacterData, "]]>");
        break;
    case State::Instruction:
        isOver = closedBy(kInstruction, "?>");
        break;
    case State::Values:
    case State::Foreign:
        break;
    }
    if (isOver)
        _state = State::Text;
}

void ByteArrayPacker::opening(std::string_view token)
{
    if (token == kComment)
        _state = State::Comment;
    else if (token == kCharacterData)
        _state = State::CharacterData;
    else if (token == kInstruction)
        _state = State::Instruction;
    else if (!startsWith(kComment, token) && !startsWith(kCharacterData, token))
    {
        _state = State::Tag;
        _quote = '\0';
        tag(token);
    }
}

// One more character of a tag.
void ByteArrayPacker::tag(std::string_view token)
{
    const char c = token.back();
    if (_quote != '\0')
        _quote = c == _quote ? '\0' : _quote;
    else if (c == '"' || c == '\'')
        _quote = c;
    else if (c == '>')
    {
        token.remove_prefix(1);
        const bool hasValues = _saysBytes && nameOf(token) == "VALUE.ARRAY" && !endsWith(token, "/>");
        _saysBytes = declaresBytes(token);
        _state = hasValues ? State::Values : State::Text;
    }
}

// One more character between the tags of an array of uint8.
void ByteArrayPacker::value(std::string& text, char c)
{
    if (_pending.empty() && kSpace.find(c) != std::string_view::npos)
    {
        if (c == '\n')
        {
            openRun(text);
            text += c;
        }
        return;
    }
    if (!continuesValue(_pending, c))
    {
        leaveValues(text);
        plain(text, c);
        return;
    }
    _pending += c;
    if (c != '>' || _pending.size() == kValueStart.size())
        return;
    unsigned number = 0;
    for (std::size_t i = kValueStart.size(); isDigit(_pending[i]); ++i)
        number = number * 10 + static_cast<unsigned>(_pending[i] - '0');
    if (number > kMostValue)
    {
        leaveValues(text);
        return;
    }
    openRun(text);
    const char byte = static_cast<char>(number);
    if (needsEscape(byte))
        text.append({kEscape, static_cast<char>(byte ^ kTurned)});
    else
        text += byte;
    _pending.clear();
}

void ByteArrayPacker::openRun(std::string& text)
{
    if (!std::exchange(_inRun, true))
        text += kRunStart;
}

// Ends the run; what has begun is no value, or none to pack, and stays as it came.
void ByteArrayPacker::leaveValues(std::string& text)
{
    if (std::exchange(_inRun, false))
        text += kRunEnd;
    if (_state == State::Values)
        _state = State::Text;
    for (const char c : std::exchange(_pending, {}))
        plain(text, c);
}

std::string packByteArrays(std::string_view message)
{
    std::string text;
    ByteArrayPacker().append(text, message);
    return text;
}

std::string unpackByteArrays(std::string_view text)
{
    std::string message;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t run = std::min(text.find(kRunStart, at), text.size());
        message += text.substr(at, run - at);
        at = packedRunEnd(text, run);
        PackedBytes values(text.substr(run, at - run));
        for (unsigned char value = 0; values.next(value);)
            message.append(kValueStart).append(std::to_string(value)).append(kValueEnd);
    }
    return message;
}

std::size_t packedRunEnd(std::string_view text, std::size_t at)
{
    if (at >= text.size() || text[at] != kRunStart)
        return at;
    const std::size_t end = text.find(kRunEnd, at);
    return end == std::string_view::npos ? text.size() : end + 1;
}

bool isRunMark(char c)
{
    return c == kRunStart || c == kRunEnd;
}

PackedBytes::PackedBytes(std::string_view content)
{
    if (!content.empty() && content.front() == kRunStart)
        _rest = content.substr(1, content.find(kRunEnd) - 1);
}

bool PackedBytes::next(unsigned char& value)
{
    _rest.remove_prefix(std::min(_rest.find_first_not_of('\n'), _rest.size()));
    if (_rest.empty())
        return false;
    const bool isEscaped = _rest.front() == kEscape && _rest.size() > 1;
    value = static_cast<unsigned char>(isEscaped ? _rest[1] ^ kTurned : _rest[0]);
    _rest.remove_prefix(isEscaped ? 2 : 1);
    return true;
}

} // namespace cimd
