// A disk that fills up.
#ifndef TESTS_SUPPORT_FULL_DISK_H
#define TESTS_SUPPORT_FULL_DISK_H

#include <csignal>
#include <sys/resource.h>

// While the object lives no file of the process grows beyond so many bytes; what would is refused as by a
// full disk.
class Full_Disk
{
  public:
    explicit Full_Disk(rlim_t bytes) : _handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &_before);
        const rlimit limit{bytes, _before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~Full_Disk()
    {
        ::setrlimit(RLIMIT_FSIZE, &_before);
        std::signal(SIGXFSZ, _handler);
    }
    Full_Disk(const Full_Disk&) = delete;
    Full_Disk& operator=(const Full_Disk&) = delete;

  private:
    void (*_handler)(int);
    rlimit _before{};
};

#endif
