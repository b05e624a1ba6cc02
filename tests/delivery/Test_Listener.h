// A listener of indications in the hands of a test.
#ifndef TESTS_DELIVERY_TEST_LISTENER_H
#define TESTS_DELIVERY_TEST_LISTENER_H

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// Takes connections on a port of its own, on a thread of its own, until its end.
class Test_Listener
{
  public:
    struct Request
    {
        std::string head; // the request line and the headers
        std::string body;
        int connection; // numbered from 0
    };

    struct Reply
    {
        std::string text; // empty: none
        bool closes = false;
    };

    // What is done with a request; called on the listener's thread.
    typedef std::function<Reply(const Request& request)> Handler;

    // The answers of a listener.
    static Reply accept(const Request& request);
    static Reply answer(int status, const std::string& body = "", const std::string& header = "");

    explicit Test_Listener(Handler handler = accept);
    ~Test_Listener();
    Test_Listener(const Test_Listener&) = delete;
    Test_Listener& operator=(const Test_Listener&) = delete;

    std::string url(const std::string& credentials = "") const;

    // The requests so far, once there are so many; throws when they do not come.
    std::vector<Request> waitFor(std::size_t count) const;
    std::vector<Request> requests() const { return waitFor(0); }
    // Returns when the body of a request holds the text; throws when none comes.
    void waitFor(const std::string& text) const;

  private:
    struct Connection
    {
        int number;
        std::string received;
    };

    void run();
    // False: the connection is at its end.
    bool receive(int socket, Connection& connection);

    const Handler _handler;
    int _listening = -1; // its shutdown ends the thread
    int _port = 0;
    std::map<int, Connection> _connections; // by socket; the thread's

    mutable std::mutex _lock;
    mutable std::condition_variable _changed;
    std::vector<Request> _requests;

    std::thread _thread;
};

#endif
