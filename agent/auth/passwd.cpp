// cimd-passwd: sets, changes and removes the users who may log in to cimd.
#include "agent/auth/PasswordTable.h"
#include "agent/auth/password_hash.h"
#include "agent/auth/private_file.h"
#include "agent/base/FileDescriptor.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <getopt.h>
#include <iterator>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <sys/signalfd.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace
{

using namespace cimd;

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

constexpr const char* kHelp = R"(NAME
       cimd-passwd - manage the users of cimd

SYNOPSIS
       cimd-passwd [--stdin] FILE USER
       cimd-passwd --delete FILE USER

DESCRIPTION
       Sets the password of a user in a password file of cimd, adding the user or making the file as needed. The
       password is asked for twice without showing it. A running cimd notices the change by itself.

OPTIONS
       --stdin
              Take the password from one line of standard input instead.
       -D, --delete
              Remove the user.
       --help
              Print this text and exit.

EXIT STATUS
       0 if the file was changed, 1 if not, 2 for a wrong command line.
)";

class UsageError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// The terminal shows nothing of what is typed, and does again at the end of the scope.
class Silence
{
  public:
    Silence()
    {
        if (tcgetattr(STDIN_FILENO, &_before) != 0)
            throw std::system_error(errno, std::generic_category(), "cannot use the terminal");
        // Signals must not end the program here and leave the terminal silent: they wait until they are
        // looked for, so that none is lost between the prompt and the wait.
        sigset_t interrupts;
        sigemptyset(&interrupts);
        for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
            sigaddset(&interrupts, number);
        _interrupts = FileDescriptor(signalfd(-1, &interrupts, SFD_CLOEXEC));
        if (_interrupts.get() < 0)
            throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
        sigprocmask(SIG_BLOCK, &interrupts, &_signalsBefore);
        termios silent = _before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silent.c_lflag |= ECHONL;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~Silence()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &_before);
        sigprocmask(SIG_SETMASK, &_signalsBefore, nullptr);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

    // Returns when a whole line is there to read, or the input is at its end.
    void awaitLine() const
    {
        pollfd sources[] = {{_interrupts.get(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        while (poll(sources, std::size(sources), -1) < 0)
            if (errno != EINTR)
                throw std::system_error(errno, std::generic_category(), "no password was read");
        signalfd_siginfo interrupt{};
        if (sources[0].revents != 0 && read(_interrupts.get(), &interrupt, sizeof interrupt) > 0)
            throw std::runtime_error("no password was read: " +
                                     std::string(strsignal(static_cast<int>(interrupt.ssi_signo))));
    }

  private:
    termios _before{};
    sigset_t _signalsBefore{};
    FileDescriptor _interrupts;
};

// A line of standard input without its end.
std::string readLine()
{
    std::string line;
    char c = 0;
    for (;;)
    {
        const ssize_t got = read(STDIN_FILENO, &c, 1);
        if (got < 0)
            throw std::system_error(errno, std::generic_category(), "no password was read");
        if (got == 0 && line.empty())
            throw std::runtime_error("no password was given: standard input is at its end");
        if (got == 0 || c == '\n')
            break;
        line += c;
        if (line.size() > kLongestPassword + 1) // hashPassword() says what is wrong with it
            break;
    }
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

std::string ask(const std::string& prompt)
{
    const Silence silence; // first: it drops what was typed before
    std::fputs(prompt.c_str(), stderr);
    silence.awaitLine();
    return readLine();
}

std::string newPassword(const std::string& user, bool fromInput)
{
    if (fromInput)
        return readLine();
    if (isatty(STDIN_FILENO) == 0)
        throw std::runtime_error("standard input is not a terminal to ask for a password; use --stdin");
    std::string password = ask("New password of " + user + ": ");
    if (ask("The same again: ") != password)
        throw std::runtime_error("the two passwords are not the same; nothing was changed");
    return password;
}

// Keeps two runs of this program from losing each other's change.
FileDescriptor lockBeside(const std::string& file)
{
    const std::string folder = std::filesystem::absolute(file).parent_path();
    FileDescriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() < 0 || flock(directory.get(), LOCK_EX) != 0)
        throw std::runtime_error(folder + ": cannot open: " + std::generic_category().message(errno));
    return directory;
}

PasswordTable tableOf(const std::string& file)
{
    if (!fileStamp(file))
        return {};
    return PasswordTable::parse(readSmallFile(file, Secrecy::Secret).text, file);
}

void run(const std::string& file, const std::string& user, bool isRemoval, bool fromInput)
{
    const std::string fault = userNameFault(user);
    if (!fault.empty())
        throw std::runtime_error(fault);
    tableOf(file); // before a password is asked for in vain
    const std::string hash = isRemoval ? std::string() : hashPassword(newPassword(user, fromInput));
    const FileDescriptor lock = lockBeside(file);
    PasswordTable table = tableOf(file);
    if (!isRemoval)
        table.set(user, hash);
    else if (!table.remove(user))
        throw std::runtime_error(file + ": there is no user " + user);
    replaceFile(file, table.text());
}

int runCommandLine(int argc, char* argv[])
{
    const option options[] = {{"delete", no_argument, nullptr, 'D'},
                              {"stdin", no_argument, nullptr, 's'},
                              {"help", no_argument, nullptr, 'h'},
                              {nullptr, 0, nullptr, 0}};
    bool isRemoval = false;
    bool fromInput = false;
    opterr = 0;
    for (int found = 0; (found = getopt_long(argc, argv, "D", options, nullptr)) != -1;)
    {
        if (found == 'h')
        {
            std::fputs(kHelp, stdout);
            return EXIT_SUCCESS;
        }
        if (found == '?')
            throw UsageError(std::string(argv[optind - 1]) + ": there is no such option");
        isRemoval = isRemoval || found == 'D';
        fromInput = fromInput || found == 's';
    }
    if (argc - optind != 2)
        throw UsageError("a FILE and a USER are needed");
    if (isRemoval && fromInput)
        throw UsageError("--delete needs no password, so no --stdin either");
    run(argv[optind], argv[optind + 1], isRemoval, fromInput);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char* argv[])
try
{
    return runCommandLine(argc, argv);
}
catch (const UsageError& error)
{
    std::fprintf(stderr, "cimd-passwd: %s; see cimd-passwd --help\n", error.what());
    return kExitUsage;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "cimd-passwd: %s\n", error.what());
    return kExitFailed;
}
