#include "answers/bodysender.h"

#include <algorithm>
#include <chrono>

#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

/// What goes over the connection, in the end.
struct Delivery {
    std::string bytes;
    int copies = 1;
    std::chrono::milliseconds drip{0};
    WaitingRoom& waitingRoom;

    /// @return whether the client has taken all of it.
    bool send(httplib::DataSink& sink) const {
        for (int i = 0; i < copies; ++i) {
            if (!sink.is_writable() || !(drip.count() > 0 ? sendSlowly(sink) : sendAtOnce(sink))) {
                return false;
            }
        }
        return true;
    }

    bool sendAtOnce(httplib::DataSink& sink) const {
        return sink.write(bytes.data(), bytes.size());
    }

    bool sendSlowly(httplib::DataSink& sink) const {
        return std::all_of(bytes.begin(), bytes.end(), [&](const char& byte) {
            return sink.write(&byte, 1) && !waitingRoom.waitFor(drip) && sink.is_writable();
        });
    }
};

} // namespace

void sendBody(const ScriptedAnswer& script, const std::string& body, WaitingRoom& waitingRoom,
              httplib::Response& response) {
    const bool cut = script.action == Action::Cut;
    if (!cut && script.repeat == 1 && script.dripMs == 0 && !script.announce) {
        response.set_content(body, kJsonType);
        return;
    }
    Delivery delivery{body, script.repeat, std::chrono::milliseconds(script.dripMs), waitingRoom};
    size_t announced = body.size();
    if (cut) {
        // Of nothing, something is missing as well.
        announced = std::max<size_t>(announced, 2);
        delivery.bytes.resize(std::min(
            body.size(), script.cutAt ? static_cast<size_t>(*script.cutAt) : body.size() / 2));
    }
    if (script.announce) {
        announced = static_cast<size_t>(*script.announce);
    } else if (script.repeat > 1 || announced == 0) {
        response.set_chunked_content_provider(kJsonType,
                                              [delivery](size_t, httplib::DataSink& sink) {
                                                  const bool whole = delivery.send(sink);
                                                  sink.done();
                                                  return whole;
                                              });
        return;
    }
    // The library closes the connection when the provider gives up, so this one is called once.
    response.set_content_provider(announced, kJsonType,
                                  [delivery](size_t, size_t, httplib::DataSink& sink) {
                                      delivery.send(sink);
                                      return false;
                                  });
}

} // namespace vesk::backend
