// The entries of the logs of the local switch.
#include "switchProviders/VRAX_LogEntry_Provider.h"

#include "switchaccess/local_switch.h"
#include "switchaccess/log_entries.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace cimple
{

namespace
{

const char* messageOf(Log_Entry& entry)
{
    return entry.fields()[entry.count() - 1];
}

// "VRAX:LogEntry:<wwn>:User", with which the names of a log's entries begin.
std::string logId(const char* localWwn, int log_type, const Caller& caller)
{
    return std::string("VRAX:LogEntry:") + localWwn + ":" +
           logWord(log_type, "createLogEntryInstance", caller);
}

std::string entryId(const std::string& log, const char* time, const char* message)
{
    return log + ":" + time + ":" + std::to_string(messageChecksum(message));
}

void fill(VRAX_LogEntry& instance, Log_Entry& entry, const std::string& log, int log_type)
{
    const char* const message = messageOf(entry);
    instance.InstanceID.set(entryId(log, entry.time(), message).c_str());
    instance.RecordID.set(entry.fields()[0]);
    instance.RecordData.set(message);
    instance.LogInstanceID.set(log.c_str());
    instance.LogName.set(log_type == kUserLog ? "User Log" : "Alarm Log");
}

// What the name of an entry says.
struct Entry_Name
{
    int log_type;
    std::string time;
};

std::optional<Entry_Name> entryName(const std::string& id)
{
    const std::pair<const char*, int> logs[] = {{":User:", kUserLog}, {":Alarm:", kAlarmLog}};
    for (const auto& [word, type] : logs)
    {
        const std::size_t at = id.find(word);
        if (at == std::string::npos)
            continue;
        const std::size_t start = at + std::strlen(word);
        const std::size_t checksum = id.rfind(':');
        return Entry_Name{type, id.substr(start, checksum > start ? checksum - start : 0)};
    }
    return std::nullopt;
}

// The number of the newest entry; the highest that a walk comes to when the entry does not tell it.
std::uint32_t newestNumber(int log_type, const Caller& caller)
{
    Log_Entry last;
    const std::string text = getLastEntry(log_type, caller);
    if (text.empty())
        throw VRAX_Except(
            caller.source, caller.function, caller.line, Failure_Text("Unable to get last log entry"));
    if (last.parse(text))
        return std::min(last.number(), kHighestEntry);
    cim_log(kLogInfo, "Unable to parse last log entry\n");
    return kHighestEntry;
}

constexpr char kUnparsed[] = "Unable to parse next logentry time\n";

// The entry that is looked for, and the numbers of those among which it is.
struct Search
{
    int log_type;
    std::string log; // see logId()
    std::string id;
    Log_Time tv_inst;
    std::uint32_t first;
    std::uint32_t last;
    Caller caller;
};

// Negative, zero or positive as the time that is looked for is before, at or after the entry's; nothing when
// the entry's cannot be read.
std::optional<std::int64_t> compared(const Search& search, const Log_Entry& next)
{
    cim_log(kLogTrace,
            "log entry range [%u..%u..%u]\n",
            unsigned{search.first},
            unsigned{next.number()},
            unsigned{search.last});
    Log_Time tv_next{};
    if (timestringToTimeval(next.time(), tv_next) != nullptr)
    {
        cim_log(kLogInfo, kUnparsed);
        return std::nullopt;
    }
    const std::int64_t difference = tv_cmp(search.tv_inst, tv_next);
    if (difference != 0)
        cim_log(kLogTrace, "%s", difference > 0 ? "tv_inst > tv_next\n" : "tv_inst < tv_next\n");
    return difference;
}

// Narrows the search to where entries of that time begin in a log whose times rise, without reading what is
// in between.
Search bisected(Search search)
{
    while (search.first <= search.last)
    {
        const std::uint32_t middle = search.first + (search.last - search.first) / 2;
        std::optional<std::uint32_t> tooEarly;
        for (const Log_Entry& next : Log_Walk(search.log_type, search.caller, kUnparsed, middle - 1))
        {
            if (next.number() > search.last)
                break;
            if (const auto difference = compared(search, next))
            {
                if (*difference > 0)
                    tooEarly = next.number();
                break;
            }
        }
        if (tooEarly)
            search.first = *tooEarly + 1;
        else
            search.last = middle - 1;
    }
    return search;
}

// Goes on to the entry with that name. False when there is none; the walk is at its end then if the log ended
// before the last number. In a log whose times rise the first later entry ends the search.
bool reach(Log_Walk& walk, const Search& search, bool timesRise)
{
    for (walk.start(); !walk.atEnd(); walk.advance())
    {
        Log_Entry& next = walk.current();
        const auto difference = compared(search, next);
        if (difference == 0 && entryId(search.log, next.time(), messageOf(next)) == search.id)
            return true;
        // What is written meanwhile is not waited for.
        if (next.number() >= search.last || (timesRise && difference && *difference < 0))
            return false;
    }
    return false;
}

} // namespace

void VRAX_LogEntry_Provider::build(Map_Writer<VRAX_LogEntry>& map)
{
    const Caller caller = {kSource, "load"};
    const Local_Switch_Wwn localWwn(caller);
    for (const int log_type : {kUserLog, kAlarmLog})
    {
        const std::string log = logId(localWwn.text(), log_type, caller);
        for (Log_Entry& entry : Log_Walk(log_type, caller))
        {
            Owned<VRAX_LogEntry> instance = make();
            fill(*instance, entry, log, log_type);
            add(map, instance);
        }
    }
}

Get_Instance_Status VRAX_LogEntry_Provider::get_instance(const VRAX_LogEntry* model, VRAX_LogEntry*& instance)
{
    const Caller caller = {kSource, "get_instance"};
    const auto body = [&](Operation<Get_Instance_Status>& op)
    {
        const auto notFound = [&op](const char* why)
        { op.failWith(GET_INSTANCE_NOT_FOUND, Failure_Text::plain(why)); };
        const std::string id = model->InstanceID.value.c_str();
        const std::optional<Entry_Name> wanted = entryName(id);
        if (!wanted)
            notFound("Badly formatted InstanceID, :User: or :Alarm: not specified");
        Log_Time tv_inst{};
        if (const char* fault = timestringToTimeval(wanted->time.c_str(), tv_inst))
            notFound(fault);
        const Local_Switch_Wwn localWwn(caller);
        const int log_type = wanted->log_type;

        Log_Walk first(log_type, caller, "Unable to parse first_arr\n");
        first.start();
        if (first.atEnd())
            notFound("Unable to get first log entry");
        const Search search = {log_type,
                               logId(localWwn.text(), log_type, caller),
                               id,
                               tv_inst,
                               first.current().number(),
                               newestNumber(log_type, caller),
                               caller};
        // When the switch's clock was set back the entry may be anywhere.
        Log_Walk near(log_type, caller, kUnparsed, bisected(search).first - 1);
        Log_Walk all(log_type, caller, kUnparsed, search.first - 1);
        Log_Walk* const at = reach(near, search, true) ? &near : reach(all, search, false) ? &all : nullptr;
        if (at != nullptr)
        {
            Owned<VRAX_LogEntry> found = makeFor(op);
            fill(*found, at->current(), search.log, log_type);
            requireKeys(op, *found);
            instance = found.release();
            return GET_INSTANCE_OK;
        }
        if (all.atEnd())
            notFound("Can't get expected next entry");
        cim_log(kLogInfo, "log entry not found\n");
        return GET_INSTANCE_NOT_FOUND;
    };
    return operation(__func__, GET_INSTANCE_FAILED, body);
}

} // namespace cimple
