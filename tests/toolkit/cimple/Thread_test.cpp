// Threads and their contexts, locks and conditions, calls to the server, the log file.
#include "demo_objects.h"
#include <cimple/Cond.h>
#include <cimple/Thread_Context.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

using namespace cimple;

namespace
{
struct Events
{
    void add(const std::string& event)
    {
        const Auto_Mutex guard(lock);
        list.push_back(event);
    }

    Mutex lock;
    std::vector<std::string> list;
};

class Context : public Thread_Context
{
  public:
    Context(Events& events, std::string name) : _events(events), _name(std::move(name)) {}
    ~Context() override { _events.add(_name + " gone"); }

    std::unique_ptr<Thread_Context> create_child() override
    {
        return std::make_unique<Context>(_events, _name + ".child");
    }
    void thread_started() override { _events.add(_name + " started"); }
    void thread_ended() override { _events.add(_name + " ended"); }

    std::unique_ptr<Instance_Source> enum_instances(const char*, const Instance*) override { return nullptr; }
    Ref<Instance> get_instance(const char*, const Instance*) override { return Ref<Instance>(); }
    int create_instance(const char*, const Instance*) override { return 0; }
    int delete_instance(const char*, const Instance*) override { return 0; }
    int modify_instance(const char*, const Instance*) override { return 0; }
    int invoke_method(const char*, const Instance*, Instance*) override { return 0; }
    void allow_unload(bool) override {}
    bool get_username(String& user_name) override
    {
        user_name = _name.c_str();
        return true;
    }

  private:
    Events& _events;
    std::string _name;
};

class Context_Guard
{
  public:
    explicit Context_Guard(Thread_Context& context) { Thread_Context::push(&context); }
    ~Context_Guard() { Thread_Context::pop(); }
};

void* return_argument(void* arg)
{
    return arg;
}

void* exit_early(void* arg)
{
    Thread::exit(arg);
    return nullptr;
}

TEST(ThreadTest, RunsUnderAChildOfItsCreatorsContext)
{
    for (const Thread_Proc proc : {return_argument, exit_early})
    {
        Events events;
        {
            Context context(events, "parent");
            const Context_Guard guard(context);
            Thread thread;
            ASSERT_EQ(Thread::create_joinable(thread, proc, &events), 0);
            void* result = nullptr;
            ASSERT_EQ(Thread::join(thread, result), 0);
            EXPECT_EQ(result, &events);
        }
        EXPECT_EQ(events.list,
                  std::vector<std::string>(
                      {"parent.child started", "parent.child ended", "parent.child gone", "parent gone"}));
    }
}

TEST(ThreadTest, NamesThreads)
{
    EXPECT_TRUE(Thread::equal(Thread::self(), Thread::self()));
    Thread none;
    EXPECT_FALSE(Thread::equal(none, Thread::self()));
    EXPECT_TRUE(Thread::equal(none, Thread()));
    void* result = nullptr;
    EXPECT_EQ(Thread::join(none, result), ESRCH);

    Thread thread;
    ASSERT_EQ(Thread::create_joinable(thread, return_argument, nullptr), 0); // without any context
    Thread same(thread);
    EXPECT_TRUE(Thread::equal(same, thread) && !Thread::equal(thread, Thread::self()));
    EXPECT_EQ(Thread::join(same, result), 0);
}

TEST(ThreadTest, RunsDetached)
{
    struct Baton
    {
        Mutex mutex;
        Cond cond;
        int passed = 0;
    } baton;
    const auto pass = [](void* arg) -> void*
    {
        Baton& taken = *static_cast<Baton*>(arg);
        const Auto_Mutex guard(taken.mutex);
        taken.passed++;
        taken.cond.signal();
        return nullptr;
    };
    const Auto_Mutex guard(baton.mutex); // at the end, the last one is out
    for (int i = 0; i < 3; i++)
    {
        Thread thread;
        ASSERT_EQ(Thread::create_detached(thread, pass, &baton), 0);
    }
    while (baton.passed < 3)
        baton.cond.wait(baton.mutex);
}

TEST(MutexTest, IsRecursiveUnlessToldOtherwise)
{
    Mutex recursive;
    recursive.lock();
    EXPECT_EQ(recursive.try_lock(), 0);
    recursive.unlock();
    recursive.unlock();

    Mutex plain(false);
    plain.lock();
    EXPECT_EQ(plain.try_lock(), -1);
    plain.unlock();
    EXPECT_EQ(plain.try_lock(), 0);
    plain.unlock();
}

TEST(CimomTest, FailsWithoutAContext)
{
    const Ref<Demo_Rack> model = demo::rack("model");
    Instance_Enumerator enumerator;
    String user("nobody");
    EXPECT_EQ(cimom::enum_instances("root/demo", model.ptr(), enumerator), -1);
    EXPECT_FALSE(enumerator);
    EXPECT_FALSE(cimom::get_instance("root/demo", model.ptr()));
    EXPECT_EQ(cimom::create_instance("root/demo", model.ptr()), -1);
    EXPECT_EQ(cimom::delete_instance("root/demo", model.ptr()), -1);
    EXPECT_EQ(cimom::modify_instance("root/demo", model.ptr()), -1);
    EXPECT_EQ(cimom::invoke_method("root/demo", model.ptr(), nullptr), -1);
    EXPECT_FALSE(cimom::get_username(user));
    cimom::allow_unload(true);
}

// In a process of its own, because the settings are read once.
TEST(LogDeathTest, WritesWhatTheLevelLetsThrough)
{
    const auto write_and_exit = []
    {
        char made[] = "/tmp/cimple_log_XXXXXX";
        const std::string folder = mkdtemp(made);
        std::ofstream(folder + "/.cimplerc") << "# settings\nLOG_LEVEL=warn\n";
        setenv("CIMPLE_HOME", folder.c_str(), 1);
        CIMPLE_ERR(("port %u down", 7u));
        CIMPLE_WARN(("%s", std::string(10000, 'x').c_str()));
        CIMPLE_INFO(("not shown"));
        log_enable(false);
        CIMPLE_FATAL(("not shown either"));
        std::stringstream text;
        text << std::ifstream(folder + "/.cimple/messages").rdbuf();
        remove((folder + "/.cimple/messages").c_str());
        remove((folder + "/.cimple").c_str());
        remove((folder + "/.cimplerc").c_str());
        remove(folder.c_str());
        std::string line;
        while (std::getline(text, line))
            fprintf(stderr, "<%s>\n", line.substr(20, 30 + line.find("): ")).substr(0, 100).c_str());
        _exit(0);
    };
    EXPECT_EXIT(write_and_exit(),
                testing::ExitedWithCode(0),
                "<ERR: [^>]*Thread_test.cpp\\([0-9]+\\): port 7 down>\n<WARN: "
                "[^>]*Thread_test.cpp\\([0-9]+\\): x+>\n$");
}
} // namespace
