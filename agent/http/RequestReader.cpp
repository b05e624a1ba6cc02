// The grammar of requests, line by line.
#include "agent/http/RequestReader.h"

#include "agent/cim/CimName.h"
#include "agent/http/cim_headers.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kChunkLine = 1024; // size and extensions, which nobody here knows

constexpr const char* kTwice = "A header that may be there once is there twice.";
constexpr const char* kBadLength = "The length of the body is given in a way that can be read differently.";

// Of these a second one would have to agree with the first, or somebody on the way may go by the other.
constexpr const char* kSingle[] = {
    "Host", "Content-Length", "Transfer-Encoding", "Authorization", "CIMOperation", "CIMMethod", "CIMObject"};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isTokenCharacter(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           (c != '\0' && std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos);
}

bool isToken(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

// Neither control characters nor, as they end lines, CR.
bool isText(std::string_view text)
{
    return std::none_of(text.begin(),
                        text.end(),
                        [](char c)
                        { return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f'; });
}

} // namespace

void RequestReader::begin(State state, std::size_t room)
{
    _state = state;
    _room = room;
}

void RequestReader::fail(unsigned status, const char* reason)
{
    _state = State::Failed;
    _fault = {status, reason};
}

RequestReader::Event RequestReader::next(std::string_view& bytes)
{
    for (;;)
    {
        if (_state == State::Failed)
            return Event::Bad;
        if (_state == State::Complete)
        {
            begin(State::Start, _headBytes);
            return Event::End;
        }
        if (bytes.empty())
            return Event::More;
        if (isInBody())
        {
            _piece = bytes.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(_left, bytes.size())));
            bytes.remove_prefix(_piece.size());
            _left -= _piece.size();
            if (_left == 0)
                _state = _state == State::Body ? State::Complete : State::ChunkEnd;
            return Event::Body;
        }
        if (!takeLine(bytes))
            continue;
        const bool wasHead = _state == State::Headers;
        readLine();
        _line.clear();
        if (wasHead && _state != State::Headers && _state != State::Failed)
            return Event::Head;
    }
}

// True when `_line` is a whole line, its end taken off.
bool RequestReader::takeLine(std::string_view& bytes)
{
    const std::size_t end = bytes.find('\n');
    const std::size_t size = end == std::string_view::npos ? bytes.size() : end + 1;
    if (size > _room)
    {
        overflow();
        return false;
    }
    _room -= size;
    _line.append(bytes.substr(0, size));
    bytes.remove_prefix(size);
    if (end == std::string_view::npos)
        return false;
    _line.pop_back();
    const bool hasReturn = !_line.empty() && _line.back() == '\r';
    if (hasReturn)
        _line.pop_back();
    if (isText(_line) && (hasReturn || !isInChunkLine()))
        return true;
    fail(kBadRequest, "There is a control character where text or the end of a line belongs.");
    return false;
}

void RequestReader::overflow()
{
    if (isInChunkLine())
        fail(kBadRequest, "The line before a chunk is too long.");
    else if (_state == State::Start)
        fail(kTargetTooLong, "The request line is too long.");
    else
        fail(kHeadTooLarge, "The headers are too large.");
}

void RequestReader::readLine()
{
    switch (_state)
    {
    case State::Start:
        if (!_line.empty()) // some clients end a body with an empty line that does not belong to it
            readStart();
        break;
    case State::Headers:
        return _line.empty() ? endHead() : readHeader();
    case State::ChunkSize:
        return readChunkSize();
    case State::ChunkEnd:
        if (_line.empty())
            begin(State::ChunkSize, kChunkLine);
        else
            fail(kBadRequest, "A chunk is longer than its size.");
        break;
    default: // trailers, which say nothing that is of interest here
        if (_line.empty())
            _state = State::Complete;
        break;
    }
}

void RequestReader::readStart()
{
    constexpr const char* kNoStart = "This is no request of HTTP 1.";
    const std::string_view line = _line;
    const std::size_t first = std::min(line.find(' '), line.size());
    const std::size_t last = line.rfind(' ');
    if (!isToken(line.substr(0, first)) || last == std::string_view::npos || last <= first + 1)
        return fail(kBadRequest, kNoStart);
    const std::string_view target = line.substr(first + 1, last - first - 1);
    const std::string_view version = line.substr(last + 1);
    if (target.find_first_of(" \t") != std::string_view::npos || version.size() != 8 ||
        version.substr(0, 5) != "HTTP/" || !isDigit(version[5]) || version[6] != '.' || !isDigit(version[7]))
        return fail(kBadRequest, kNoStart);
    if (version[5] != '1')
        return fail(kUnknownVersion, kNoStart);
    _head = Head();
    _head.form.isOld = version[7] == '0';
    _head.request.method = line.substr(0, first);
    _head.request.target = percentDecoded(target.substr(0, target.find('?')));
    _state = State::Headers;
}

void RequestReader::readHeader()
{
    const std::string_view line = _line;
    const std::size_t colon = std::min(line.find(':'), line.size());
    if (colon == line.size() || !isToken(line.substr(0, colon)))
        return fail(kBadRequest, "A header does not begin with a name and a colon.");
    _head.request.headers.emplace_back(line.substr(0, colon), withoutBlanks(line.substr(colon + 1)));
    _room -= std::min(_room, sizeof(HttpHeader));
}

void RequestReader::endHead()
{
    const HttpRequest& request = _head.request;
    AnswerForm& form = _head.form;
    for (const char* name : kSingle)
    {
        const auto isNamed = [name](const HttpHeader& header) { return equalNoCase(header.first, name); };
        if (std::count_if(request.headers.begin(), request.headers.end(), isNamed) > 1)
            return fail(kBadRequest, kTwice);
    }
    if (!form.isOld && request.header("Host") == nullptr)
        return fail(kBadRequest, "The header Host is missing.");
    if (!readLengths())
        return;
    form.closes =
        form.isOld ? !request.lists("Connection", "keep-alive") : request.lists("Connection", "close");
    form.hasBody = request.method != "HEAD";
    form.takesTrailers = !form.isOld && request.lists("TE", "trailers");
    _head.asks = !form.isOld && request.lists("Expect", "100-continue");
    _left = _head.announced;
    if (request.header("Transfer-Encoding") != nullptr)
        begin(State::ChunkSize, kChunkLine);
    else
        _state = _left == 0 ? State::Complete : State::Body;
}

// False when the end of the body cannot be told for sure.
bool RequestReader::readLengths()
{
    const std::string* coding = _head.request.header("Transfer-Encoding");
    const std::string* length = _head.request.header("Content-Length");
    if (coding != nullptr && (length != nullptr || _head.form.isOld))
        fail(kBadRequest, kBadLength);
    else if (coding != nullptr && !equalNoCase(*coding, "chunked"))
        fail(kNotImplemented, "The only transfer coding is chunked.");
    else if (length != nullptr && (length->empty() || !std::all_of(length->begin(), length->end(), isDigit)))
        fail(kBadRequest, kBadLength);
    else if (length != nullptr)
    {
        const auto [end, error] =
            std::from_chars(length->data(), length->data() + length->size(), _head.announced);
        if (error != std::errc()) // more than anybody takes
            _head.announced = std::numeric_limits<std::uint64_t>::max();
    }
    return _state != State::Failed;
}

void RequestReader::readChunkSize()
{
    const char* const end = _line.data() + _line.size();
    const auto [stop, error] = std::from_chars(_line.data(), end, _left, 16);
    const std::string_view rest = withoutBlanks({stop, static_cast<std::size_t>(end - stop)});
    if (error != std::errc() || (!rest.empty() && rest.front() != ';'))
        return fail(kBadRequest, "A chunk does not begin with its size.");
    if (_left == 0)
        begin(State::Trailers, _headBytes);
    else
        begin(State::Chunk, kChunkLine);
}

} // namespace cimd
