// Makes what a load does with its instances fail on demand.
//
// A program or library that uses this is linked with the wrappers that tests/common/CMakeLists.txt names:
// calls from outside the file that defines the function come here first. While an object lives, the step
// fails for instances of one class once it has succeeded for the given number of them; one object per step at
// a time.
#ifndef TESTS_COMMON_TESTING_FAILURES_H
#define TESTS_COMMON_TESTING_FAILURES_H

// One step of a load that can fail. Exported: a test of the loaded module reaches into it by these classes.
class [[gnu::visibility("default")]] Step_Failures
{
  public:
    virtual ~Step_Failures();
    Step_Failures(const Step_Failures&) = delete;
    Step_Failures& operator=(const Step_Failures&) = delete;

    // Whether the step has failed since the object was made.
    bool struck() const;

  protected:
    struct Step;
    Step_Failures(Step & step, const char* className, int successes);

  private:
    Step& _step;
};

// cimple::create as loads call it: null, or std::bad_alloc. Creations of other callers succeed.
class [[gnu::visibility("default")]] Create_Failures : public Step_Failures
{
  public:
    enum class Kind
    {
        ReturnsNull,
        Throws
    };
    explicit Create_Failures(const char* className, int successes = 0, Kind kind = Kind::ReturnsNull);
};

// cimple::checkInstanceKeys: finds a key that is not populated.
class [[gnu::visibility("default")]] Key_Failures : public Step_Failures
{
  public:
    explicit Key_Failures(const char* className, int successes = 0);
};

// Instance_Map_Base::_insert: finds an instance with equal keys in the map.
class [[gnu::visibility("default")]] Insert_Failures : public Step_Failures
{
  public:
    explicit Insert_Failures(const char* className, int successes = 0);
};

// Makes every map of the module stale, or that of one class.
[[gnu::visibility("default")]] void makeMapsStale();
[[gnu::visibility("default")]] void makeMapStale(const char* className);

#endif
