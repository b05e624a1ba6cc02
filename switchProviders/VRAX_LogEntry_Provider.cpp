// The entries of the logs of the local switch.
#include "switchProviders/VRAX_LogEntry_Provider.h"

#include "switchaccess/local_switch.h"
#include "switchaccess/log_entries.h"

#include <cstring>
#include <limits>
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

// The number of the newest entry; the highest one when the entry does not tell it.
std::uint32_t newestNumber(int log_type, const Caller& caller)
{
    Log_Entry last;
    const std::string text = getLastEntry(log_type, caller);
    if (text.empty())
        throw VRAX_Except(
            caller.source, caller.function, caller.line, Failure_Text("Unable to get last log entry"));
    if (last.parse(text))
        return last.number();
    cim_log(kLogInfo, "Unable to parse last log entry\n");
    return std::numeric_limits<std::uint32_t>::max();
}

// Whether the entry has this name. Its time is compared first: it tells most entries apart.
bool isWanted(Log_Entry& next, const Log_Time& tv_inst, const std::string& id, const std::string& log)
{
    Log_Time tv_next{};
    if (timestringToTimeval(next.time(), tv_next) != nullptr)
    {
        cim_log(kLogInfo, "Unable to parse next logentry time\n");
        return false;
    }
    const std::int64_t difference = tv_cmp(tv_inst, tv_next);
    if (difference != 0)
    {
        cim_log(kLogTrace, "%s", difference > 0 ? "tv_inst > tv_next\n" : "tv_inst < tv_next\n");
        return false;
    }
    return entryId(log, next.time(), messageOf(next)) == id;
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
        const std::string log = logId(localWwn.text(), wanted->log_type, caller);

        Log_Walk walk(wanted->log_type, caller, "Unable to parse first_arr\n");
        walk.start();
        if (walk.atEnd())
            notFound("Unable to get first log entry");
        walk.sayUnparsed("Unable to parse next logentry time\n");
        const std::uint32_t first = walk.current().number();
        // What is written meanwhile is not waited for.
        const std::uint32_t last = newestNumber(wanted->log_type, caller);
        while (true)
        {
            Log_Entry& next = walk.current();
            cim_log(kLogTrace,
                    "log entry range [%u..%u..%u]\n",
                    unsigned{first},
                    unsigned{next.number()},
                    unsigned{last});
            if (isWanted(next, tv_inst, id, log))
            {
                Owned<VRAX_LogEntry> found = makeFor(op);
                fill(*found, next, log, wanted->log_type);
                requireKeys(op, *found);
                instance = found.release();
                return GET_INSTANCE_OK;
            }
            if (next.number() >= last)
                break;
            walk.advance();
            if (walk.atEnd())
                notFound("Can't get expected next entry");
        }
        cim_log(kLogInfo, "log entry not found\n");
        return GET_INSTANCE_NOT_FOUND;
    };
    return operation(__func__, GET_INSTANCE_FAILED, body);
}

} // namespace cimple
