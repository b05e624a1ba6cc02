// What a person can do to the running simulated switch and see of it, as commands of words.
#ifndef SIMULATOR_CONTROL_VERB_H
#define SIMULATOR_CONTROL_VERB_H

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

using Words = std::vector<std::string>;

// A command that is none. what() says what was expected.
class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// The switch refuses a command, or there is nothing to which it could be done.
class Refusal : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Words of a command: those of a pattern stand for themselves, but those in capitals for anything.
struct Verb
{
    std::string_view pattern; // "port NUMBER down"
    std::string_view meaning; // "the cable is pulled"
    // Does it and returns what is to be shown: whole lines, or nothing. `values` are the words that stand
    // where the pattern has capitals. Throws UsageError, Refusal or ScenarioError. Null for kWatch.
    std::string (*run)(const Words& values);
};

// Shows the switch's events as they happen, to the end of the connection; the socket itself serves it.
constexpr std::string_view kWatch = "watch";

const std::vector<Verb>& verbs();

// Carries out a command. Throws as Verb::run, and UsageError with the patterns that begin so when none fits.
std::string runCommand(const Words& command);

// The text of --help: all patterns that begin with these words, with their meanings. Throws UsageError when
// there are none.
std::string helpOn(const Words& beginning);

// What can stand after these words: words, and capitals for anything.
Words nextWords(const Words& beginning);

// The parts of the table; each is the verbs of one subject.
std::vector<Verb> portVerbs();
std::vector<Verb> fabricVerbs();
std::vector<Verb> hardwareVerbs();
std::vector<Verb> zoningVerbs();
std::vector<Verb> userVerbs();
std::vector<Verb> showVerbs();

// For verbs: a value as a whole number. `what` begins the message of the UsageError: "port".
int numberOf(const std::string& value, std::string_view what);

} // namespace simulator

#endif
