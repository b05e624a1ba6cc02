// Fuzzes what arrives on a connection: the bytes are given to the reader of requests at once and in pieces,
// and what it makes of them must be the same.
//
// The first byte of the input says how long the pieces are.
#include "agent/http/RequestReader.h"
#include "tests/fuzz/fuzz.h"

using namespace cimd;

namespace
{

constexpr std::size_t kHeadBytes = 2048;

// Everything that was read, as a text.
std::string readAll(std::string_view bytes, std::size_t piece)
{
    RequestReader reader(kHeadBytes);
    std::string all;
    while (!bytes.empty())
    {
        std::string_view part = bytes.substr(0, piece);
        bytes.remove_prefix(part.size());
        for (auto event = reader.next(part); event != RequestReader::Event::More; event = reader.next(part))
        {
            const HttpRequest& request = reader.head().request;
            switch (event)
            {
            case RequestReader::Event::Head:
                all += "head " + request.method + ' ' + request.target;
                for (const auto& [name, value] : request.headers)
                    all += '\n' + name + ": " + value;
                all += "\nbody " + std::to_string(reader.head().announced) + ' ';
                break;
            case RequestReader::Event::Body:
                all += reader.piece();
                break;
            case RequestReader::Event::Bad:
                return all + "bad " + std::to_string(reader.fault().status) + reader.fault().reason;
            default:
                all += "\nend\n";
                break;
            }
        }
    }
    return all + (reader.hasBegun() ? "more" : "nothing more");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view bytes = fuzz::textOf(data + 1, size - 1);
    const std::string whole = readAll(bytes, bytes.size() + 1);
    fuzz::requireEqual("in pieces", whole, readAll(bytes, data[0] % 8U + 1));
    return 0;
}
