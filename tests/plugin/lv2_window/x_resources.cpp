#include "tests/plugin/lv2_window/x_resources.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace window_host {

namespace {

/// X-Resource's QueryClientResources: the request, and its answer before the list.
struct Request {
    std::uint8_t major, minor;
    std::uint16_t length;
    std::uint32_t of;
};
struct Answer {
    std::uint8_t header[8];
    std::uint32_t kinds;
    std::uint8_t unused[20];
};
struct Kind {
    std::uint32_t name, count;
};

} // namespace

long xResources(::Window window) {
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    xcb_extension_t extension{"X-Resource", 0};
    Request request{0, 0, 0, static_cast<std::uint32_t>(window)};
    iovec parts[3] = {{}, {}, {&request, sizeof request}}; // the first two are xcb's own
    const xcb_protocol_request_t what{1, &extension, 2, 0};
    const unsigned sent = xcb_send_request(server, XCB_REQUEST_CHECKED, parts + 2, &what);
    xcb_generic_error_t* error = nullptr;
    void* const came = sent ? xcb_wait_for_reply(server, sent, &error) : nullptr;
    long all = -1;
    if (came) {
        all = 0;
        Answer answer;
        std::memcpy(&answer, came, sizeof answer);
        for (std::uint32_t i = 0; i < answer.kinds; ++i) {
            Kind kind;
            std::memcpy(&kind, static_cast<char*>(came) + sizeof answer + i * sizeof kind,
                        sizeof kind);
            all += kind.count;
        }
    }
    std::free(came);
    std::free(error);
    xcb_disconnect(server);
    return all;
}

} // namespace window_host
