// Writing attributes: one, several in a batch, or a sequence with its way back.
#include "switchaccess/Sml_Writes.h"

#include "platform/switch_server.h"
#include "support/cim_log.h"
#include "support/substitute.h"

namespace cimple
{

int readAttribute(char (&value)[kXplSmlTextSize],
                  const char* format,
                  std::initializer_list<const char*> arguments)
{
    char key[kXplSmlTextSize];
    if (!substitute(key, sizeof(key), format, arguments))
        return XPL_INVALID_PARAMETER;
    std::int32_t error = 0;
    return xpl_smlGetV(hSwitch, value, &error, "%s", key);
}

int writeAttribute(const char* format, std::initializer_list<const char*> arguments)
{
    char key[kXplSmlTextSize];
    if (!substitute(key, sizeof(key), format, arguments))
        return XPL_INVALID_PARAMETER;
    std::int32_t error = 0;
    return xpl_smlSetV(hSwitch, &error, "%s", key);
}

void Sml_Writes::add(const char* format, std::initializer_list<const char*> arguments)
{
    xpl_smlEntry& entry = _entries.emplace_back();
    if (!substitute(entry.key, kXplSmlTextSize, format, arguments))
    {
        entry.status = XPL_INVALID_PARAMETER;
        _result = XPL_INVALID_PARAMETER;
    }
}

bool Sml_Writes::send(Call call)
{
    if (_result != 0)
        return false;
    const auto count = static_cast<std::uint32_t>(_entries.size());
    _result = call(hSwitch, _entries.data(), count);
    return _result == 0 && !isErrors(_entries.data(), count);
}

std::size_t Sml_Writes::refused() const
{
    std::size_t entry = 0;
    while (entry < _entries.size() && !isErrors(&_entries[entry], 1))
        ++entry;
    return entry;
}

std::string Sml_Writes::failure() const
{
    if (const std::size_t entry = refused(); entry < _entries.size())
        return std::string(_entries[entry].key) + ": status " + std::to_string(_entries[entry].status);
    return "status " + std::to_string(_result);
}

Sml_Transaction::~Sml_Transaction()
{
    for (auto step = _waysBack.rbegin(); step != _waysBack.rend(); ++step)
    {
        if (writeAttribute(step->key) == 0)
            continue;
        cim_log(kLogCritical, "CRIT:%s:%s[%d] %s\n", _source, _function, step->line, step->failed);
        if (step->refused != nullptr)
            step->refused();
    }
}

void Sml_Transaction::write(const char* format,
                            std::initializer_list<const char*> arguments,
                            const Failure_Text& failed,
                            int line)
{
    if (writeAttribute(format, arguments) != 0)
        throw VRAX_Except(_source, _function, line, failed);
}

void Sml_Transaction::undoBy(const char* key, const char* failed, void (*refused)(), int line)
{
    _waysBack.push_back({key, failed, refused, line});
}

} // namespace cimple
