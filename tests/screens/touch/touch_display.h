// TouchDisplay: an X server that nobody sees, with a touch screen that a test plays.
#pragma once

#include "tests/support/child_program.h"

#include <array>
#include <bit>
#include <cstdint>
#include <fstream>
#include <sys/socket.h>
#include <sys/un.h>

namespace zephyra {

/// Xorg with its drivers for no monitor and for tests of input, installed or unpacked below
/// $ZEPHYRA_XORG_ROOT.
class TouchDisplay {
public:
    static constexpr double kWidth = 1280.0, kHeight = 1024.0;
    enum class Act : std::uint32_t { begin = 18, update, end }; ///< as XInput numbers them

    TouchDisplay() {
        const char* const unpacked = std::getenv("ZEPHYRA_XORG_ROOT");
        const std::string root = unpacked ? unpacked : "";
        const std::string xorg = root + "/usr/lib/xorg/Xorg",
                          modules = root + "/usr/lib/xorg/modules";
        if (!fs::exists(xorg) || !fs::exists(modules + "/input/inputtest_drv.so") ||
            !fs::exists(modules + "/drivers/dummy_drv.so"))
            return;
        std::ofstream(folder_ / "conf") << configuration();
        const std::string number = (folder_ / "number").string();
        server_.emplace(
            ChildProgram::Words{
                "sh", "-c",
                "exec " + xorg + " -config " + (folder_ / "conf").string() + " -modulepath " +
                    modules + " -logfile " + (folder_ / "x.log").string() +
                    " -noreset -nolisten tcp -novtswitch -sharevts -displayfd 3 3>" + number},
            ChildProgram::Words{"LD_LIBRARY_PATH=" + root + "/usr/lib/x86_64-linux-gnu"},
            folder_ / "log");
        if (!comesTrue([&] { return readText(number).ends_with('\n'); }) || !connect()) return;
        name_ = ":" + std::to_string(std::stoi(readText(number)));
    }
    ~TouchDisplay() {
        ::close(socket_);
        if (server_) server_->end(SIGTERM);
    }
    TouchDisplay(const TouchDisplay&) = delete;
    TouchDisplay& operator=(const TouchDisplay&) = delete;

    /// Empty where there is no such server.
    const std::string& name() const { return name_; }

    /// Disabled and enabled again, the driver wants to be spoken to anew.
    void reconnect() {
        ::close(socket_);
        EXPECT_TRUE(connect());
    }
    /// Returns when the server has done it. Pixels of the display.
    void touch(std::uint32_t finger, Act act, double x, double y) {
        Touch message;
        message.finger = finger;
        message.act = static_cast<std::uint32_t>(act);
        message.mask[0] = 3;
        message.values[0] = x / kWidth * kAxis;
        message.values[1] = y / kHeight * kAxis;
        send(message);
        send(Head{sizeof(Head), kWait});
        std::array<char, sizeof(Head)> done{};
        EXPECT_EQ(::recv(socket_, done.data(), done.size(), MSG_WAITALL), ssize_t{sizeof(done)});
    }

private:
    static constexpr double kAxis = 0xffff; // of the device
    static constexpr std::uint32_t kVersion = 0, kWait = 1, kTouch = 6;

    // As the driver reads them.
    struct Head {
        std::uint32_t length, type;
    };
    struct Version {
        Head head{sizeof(Version), kVersion};
        std::uint16_t major = 1, minor = 0;
    };
    struct Touch {
        Head head{sizeof(Touch), kTouch};
        std::uint32_t finger = 0, act = 0;
        alignas(8) std::uint32_t hasRaw = 0;
        std::array<std::uint8_t, 8> mask{};
        alignas(8) std::array<double, 64> values{}, raw{};
    };

    template <typename Message>
    void send(const Message& message) {
        EXPECT_EQ(::send(socket_, &message, sizeof(message), MSG_NOSIGNAL),
                  ssize_t{sizeof(message)});
    }
    bool connect() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        (folder_ / "touch").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
        socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool connected = comesTrue([&] {
            return ::connect(socket_, std::bit_cast<sockaddr*>(&address), sizeof(address)) == 0;
        });
        if (!connected) return false;
        send(Version());
        std::array<char, 12> version{};
        return ::recv(socket_, version.data(), version.size(), MSG_WAITALL) == 12;
    }
    std::string configuration() const {
        return "Section \"ServerFlags\"\nOption \"AutoAddDevices\" \"false\"\nEndSection\n"
               "Section \"Device\"\nIdentifier \"d\"\nDriver \"dummy\"\nVideoRam "
               "16384\nEndSection\n"
               "Section \"Monitor\"\nIdentifier \"m\"\nHorizSync 5-1000\nVertRefresh 5-200\n"
               "EndSection\n"
               "Section \"Screen\"\nIdentifier \"s\"\nDevice \"d\"\nMonitor \"m\"\n"
               "DefaultDepth 24\nSubSection \"Display\"\nDepth 24\nModes \"1280x1024\"\n"
               "EndSubSection\nEndSection\n"
               "Section \"InputDevice\"\nIdentifier \"touch\"\nDriver \"inputtest\"\n"
               "Option \"SocketPath\" \"" +
               (folder_ / "touch").string() +
               "\"\nOption \"DeviceType\" \"Touch\"\nOption \"TouchCount\" \"10\"\nEndSection\n"
               "Section \"ServerLayout\"\nIdentifier \"l\"\nScreen \"s\"\n"
               "InputDevice \"touch\" \"SendCoreEvents\"\nEndSection\n";
    }

    const TemporaryFolder folder_;
    std::optional<ChildProgram> server_;
    int socket_ = -1;
    std::string name_;
};

} // namespace zephyra
