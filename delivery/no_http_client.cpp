// The client of a build without libcurl: there is none.
#include "delivery/Http_Client.h"

#include <new>

namespace cimple
{

class Http_Client::Engine
{
};

bool Http_Client::isAvailable()
{
    return false;
}

Http_Client::Http_Client(const Http_Settings& settings) : _settings(settings)
{
    throw std::bad_alloc();
}

Http_Client::~Http_Client() = default;

void Http_Client::start(Peer, const std::string&, Http_Body, bool) {}

std::vector<Http_Client::Outcome> Http_Client::wait(std::chrono::milliseconds)
{
    return {};
}

void Http_Client::wake() noexcept {}

void Http_Client::forget(Peer) noexcept {}

} // namespace cimple
