// Writing attributes: one, several in a batch, or a sequence with its way back.
#ifndef SWITCHACCESS_SML_WRITES_H
#define SWITCHACCESS_SML_WRITES_H

#include "platform/xpl_sml.h"
#include "support/VRAX_Except.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace cimple
{

// Reads one attribute, whose key is made from a format and its arguments (support/substitute.h). 0, or the
// platform's status; XPL_INVALID_PARAMETER when the key does not fit.
int readAttribute(char (&value)[kXplSmlTextSize],
                  const char* format,
                  std::initializer_list<const char*> arguments);

// Carries out one write, made from a format and its arguments (support/substitute.h). 0, or the platform's
// status; XPL_INVALID_PARAMETER when the text does not fit an entry.
int writeAttribute(const char* format, std::initializer_list<const char*> arguments = {});

// Writes that go to the switch in one call.
class Sml_Writes
{
  public:
    // xpl_smlBatchSet, or xpl_smlBatchCimSet for commands of the CIM agent itself.
    typedef int (*Call)(xpl_Handle, xpl_smlEntry*, std::uint32_t);

    // Appends a write.
    void add(const char* format, std::initializer_list<const char*> arguments = {});

    std::size_t size() const { return _entries.size(); }

    // Sends all, also when there are none. True when the call succeeds and no entry has an error. Nothing is
    // sent when a text did not fit its entry.
    bool send(Call call);

    // After send(): whether the switch went through the batch, whatever it said of single entries.
    bool carriedOut() const { return _result == 0; }

    // After send(): the platform's status of an entry.
    std::int32_t status(std::size_t entry) const { return _entries[entry].status; }
    // The place of the first refused entry; size() when none was.
    std::size_t refused() const;
    // What went wrong, for people: the first refused text with its status, or the status of the call.
    std::string failure() const;

  private:
    std::vector<xpl_smlEntry> _entries;
    int _result = 0;
};

// A sequence of writes that leaves the switch as it was when it does not come to its end:
//     Sml_Transaction change(kSource, __func__);
//     change.write("Cmd.Switch.ReqAdmin", {}, "Unable to Request Admin Lock");
//     change.undoBy("Cmd.Switch.RelAdmin", "Failed to release Admin Lock");
//     ...
//     change.finish();
// Texts live as long as the object.
class Sml_Transaction
{
  public:
    Sml_Transaction(const char* source, const char* function) : _source(source), _function(function)
    {
        _waysBack.reserve(kMaxWaysBack);
    }
    // Takes back what was not finished, the last step first. A step back that fails is logged with its
    // message, and the others go on.
    ~Sml_Transaction();
    Sml_Transaction(const Sml_Transaction&) = delete;
    Sml_Transaction& operator=(const Sml_Transaction&) = delete;

    // Carries out one write; throws the failure in the name of the caller's line when it is refused.
    void write(const char* format,
               std::initializer_list<const char*> arguments,
               const Failure_Text& failed,
               int line = __builtin_LINE());

    // Until finish(), the steps so far are taken back by this write. Needs no memory for the first
    // kMaxWaysBack. `refused`, if not null, is called when the switch refuses it.
    void
    undoBy(const char* key, const char* failed, void (*refused)() = nullptr, int line = __builtin_LINE());
    // Forgets the last way back: the steps since have taken its place.
    void keep() { _waysBack.pop_back(); }

    void finish() { _waysBack.clear(); }

  private:
    static constexpr std::size_t kMaxWaysBack = 8;
    struct Way_Back
    {
        const char* key;
        const char* failed;
        void (*refused)();
        int line;
    };

    const char* _source;
    const char* _function;
    std::vector<Way_Back> _waysBack;
};

} // namespace cimple

#endif
