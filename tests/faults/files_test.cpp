#include <csignal>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "faults/faulttest.h"
#include "faults/filestates.h"

namespace fs = std::filesystem;

namespace vesk::test {
namespace {

/// How a visit went, as a process can tell it.
enum FileOutcome { kHeld = 10, kNotHeld, kNoAddress, kNoTrust, kOtherwise };

struct FileFaults : FaultTest {
    /// A login in a process that the permissions of files bind, as they do not bind root.
    int visit(const std::function<void()>& meanwhile = [] {}) {
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        const __user_cap_data_struct none[2] = {};
        syscall(SYS_capset, &header, none);
        startLogin();
        meanwhile();
        const VESKLoginRet ret = observer.nextLogin().ret;
        const bool found = isHeld();
        const rlimit roomAgain = {RLIM_INFINITY, RLIM_INFINITY}; // for what a sanitizer may do
        setrlimit(RLIMIT_FSIZE, &roomAgain);
        if (ret.retCode == VESKError::SUCCESS) {
            return found ? kHeld : kNotHeld;
        }
        return ret.thirdCode == 3 ? kNoAddress : ret.thirdCode == 77 ? kNoTrust : kOtherwise;
    }

    void expectVisit(
        const std::string& row, FileOutcome outcome,
        const std::function<void()>& meanwhile = [] {}) {
        SCOPED_TRACE(row);
        expectGame(outcome, [&] { return visit(meanwhile); });
        countRow(row, 0);
    }
};

TEST_F(FileFaults, NoFileIsNeededButTheConfiguration) {
    const struct {
        const char* file;
        FileOutcome outcome;
    } rows[] = {{"VESKConfig.ini", kNoAddress}, {"cacert.pem", kNoTrust},
                {"VESKRetMsg_.json", kHeld},    {"VESKRetMsg.json", kHeld},
                {"veskrecord.log", kHeld},      {"upra_login.txt", kHeld}};
    for (const auto& row : rows) {
        const fs::path file = game.path() / row.file;
        const std::string before = readFile(file);
        for (const std::string& state : kFileStates) {
            putFile(file, state);
            // A folder that holds something cannot be replaced by the new player's file.
            const bool stays = file == game.loginCache() && fs::is_directory(file);
            expectVisit(row.file + (" is " + state), stays ? kNotHeld : row.outcome);
        }
        fs::remove_all(file);
        if (!before.empty()) {
            writeFile(file, before);
        }
    }
}

TEST_F(FileFaults, LoginThatCannotBeWrittenDownIsDeliveredButNotHeld) {
    for (const std::string& state : kFileStates) {
        backend.next(loginAnswer("A", "", 200));
        const bool isPlain = state == "missing" || state == "empty" || state == "unreadable";
        expectVisit(state, isPlain ? kHeld : kNotHeld, [&] { putFile(game.loginCache(), state); });
        fs::remove_all(game.loginCache());
    }
    for (const std::string state : {"missing", "empty"}) {
        backend.next(loginAnswer("A", "", 200));
        expectVisit("read-only folder, " + state, state == "empty" ? kHeld : kNotHeld, [&] {
            putFile(game.loginCache(), state);
            fs::permissions(game.path(), fs::perms(0555));
        });
        fs::permissions(game.path(), fs::perms(0755));
    }
    fs::remove(game.loginCache());
    for (const rlim_t room : {0, 3, 5}) {
        backend.next(loginAnswer("A", "", 200));
        expectVisit("a disk that is full after " + std::to_string(room), kNotHeld, [&] {
            const rlimit limit = {room, RLIM_INFINITY};
            std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &limit);
        });
        EXPECT_FALSE(fs::exists(game.loginCache()));
    }
    for (const auto& entry : fs::directory_iterator(game.path())) {
        EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
    }
}

TEST_F(FileFaults, ConfigurationIsReadWhateverElseTheFileHolds) {
    const std::string good = "VESK_URL=" + environment("VESK_TEST_BACKEND_URL") +
                             "\nVESK_GAME_ID=1106\nVESK_SDK_KEY=dev-key\nSTEAM_APP_ID=480";
    const std::string megabyte(1 << 20, 'x');
    const struct {
        const char* name;
        std::string content;
        FileOutcome outcome;
    } rows[] = {
        {"a long value before", "X=" + megabyte + "\n" + good, kHeld},
        {"a long key before", megabyte + "=1\n" + good, kHeld},
        {"a long line after", good + "\n" + megabyte, kHeld},
        {"nothing but a long line", megabyte, kNoAddress},
        {"4 MiB and more", good + "\n" + megabyte + megabyte + megabyte + megabyte, kNoAddress},
    };
    for (const auto& row : rows) {
        writeFile(game.path() / "VESKConfig.ini", row.content);
        expectVisit(row.name, row.outcome);
    }
}

TEST_F(FileFaults, DeviceFileOfAnyLengthIsRead) {
    for (const size_t length : {0, 1, 2, 3, 4, 5, 1 << 20, (1 << 20) + 1, 1 << 30}) {
        writeFile(game.loginCache(), std::string("KZxxx").substr(0, length));
        fs::resize_file(game.loginCache(), length);
        const bool isNothing = length == 0 || length > 1 << 20;
        const int32_t wanted = isNothing    ? VESKError::NO_STORED_LOGIN
                               : length < 4 ? -1
                                            : VESKError::CHANNEL_LOGIN_FAILED; // no KZ here
        // The code tells what was read of the device file.
        EXPECT_EQ(autoLogin().retCode, wanted) << length;
        countRow("a device file of " + std::to_string(length));
    }
}

TEST_F(FileFaults, NewFilesAreTheirOwnersOnly) {
    expectGame(kHeld, [&] {
        umask(0);
        return visit();
    });
    for (const char* file : {"upra_login.txt", "veskrecord.log"}) {
        EXPECT_EQ(fs::status(game.path() / file).permissions(), fs::perms(0600)) << file;
        countRow(file, 0);
    }
}

} // namespace
} // namespace vesk::test
