#include "faults/faulttest.h"
#include "faults/filestates.h"

namespace fs = std::filesystem;

namespace vesk::test {
namespace {

/// How a visit went, as a process can tell it.
enum Outcome { kAnswered = 10, kNotStarted, kSilent, kOther };

/// Makes the component one that lacks an entry point.
void hide(const fs::path& component, const std::string& entryPoint) {
    std::string bytes = readFile(component);
    const size_t at = bytes.find(entryPoint + '\0');
    ASSERT_NE(at, std::string::npos) << entryPoint;
    bytes[at + entryPoint.size() - 1] = '?';
    writeFile(component, bytes);
}

struct ComponentFiles : FaultTest {
    /// A login, a logout and the end, in a process of its own.
    int visit(const std::string& channel, const std::string& silence) {
        backend.next(loginAnswer("A")); // whatever the channel has to say
        startLogin(channel);
        waitUntil("an answer, or what the log says instead",
                  [&] { return observer.loginCount() != 0 || game.logLines(silence) != 0; });
        Outcome outcome = kSilent;
        if (observer.loginCount() != 0) {
            const int32_t code = observer.nextLogin().ret.retCode;
            outcome = code == VESKError::SUCCESS               ? kAnswered
                      : code == VESKError::CHANNEL_INIT_FAILED ? kNotStarted
                                                               : kOther;
        }
        // The other channel and the logout work.
        const bool whole =
            login(channel == "Steam" ? "Ferno" : "Steam").retCode == VESKError::SUCCESS &&
            logout().retCode == VESKError::SUCCESS;
        VESKLogin::UnInstall();
        return whole ? outcome : kOther;
    }

    void expectVisit(const std::string& channel, const std::string& row, Outcome outcome,
                     const std::string& silence) {
        SCOPED_TRACE(row);
        fs::remove(game.path() / "veskrecord.log");
        expectGame(outcome, [&] { return visit(channel, silence); });
        countRow(row, 0);
    }

    const Messenger ferno{game, "ferno", "frlogin.dll"};
};

TEST_F(ComponentFiles, EachEntryPointMayBeMissing) {
    const struct {
        const char* entryPoint;
        Outcome outcome;
    } rows[] = {
        {"SteamAPI_IsSteamRunning", kAnswered},
        {"SteamAPI_RestartAppIfNecessary", kAnswered},
        {"SteamAPI_Init", kNotStarted},
        {"SteamAPI_SteamUser_v020", kAnswered},
        {"SteamAPI_ISteamUser_GetSteamID", kAnswered},
        {"SteamAPI_ISteamUser_GetAuthSessionTicket", kAnswered},
        {"SteamAPI_ISteamUser_CancelAuthTicket", kAnswered},
        {"SteamAPI_Shutdown", kAnswered},
        {"frlogin_init", kSilent},
        {"frlogin_req_qrcode", kSilent},
        {"frlogin_req_client_tmp_token", kAnswered},
        {"frlogin_req_logout", kAnswered},
        {"frlogin_uninit", kAnswered},
    };
    for (const auto& row : rows) {
        const bool steam = row.entryPoint[0] == 'S';
        game.installSteam("steam_full");
        ferno.install("full");
        hide(steam ? game.path() / "steam_api64.dll" : ferno.file, row.entryPoint);
        expectVisit(steam ? "Steam" : "Ferno", row.entryPoint, row.outcome,
                    std::string("Not found function \"") + row.entryPoint);
    }
}

TEST_F(ComponentFiles, FileThatIsNoLibraryIsNoComponent) {
    for (const fs::path& file : {game.path() / "steam_api64.dll", ferno.file}) {
        const std::string good = readFile(file);
        const auto expectNone = [&](const std::string& row) {
            const bool steam = file != ferno.file;
            expectVisit(steam ? "Steam" : "Ferno", row, steam ? kNotStarted : kSilent,
                        "Load frlogin.dll failed");
        };
        for (const std::string& state : kFileStates) {
            putFile(file, state);
            expectNone(state);
        }
        for (const size_t length : {1, 64, 4096, 20000}) { // of a download that broke off
            putFile(file, "missing");
            writeFile(file, good.substr(0, length));
            expectNone(std::to_string(length) + " bytes of it");
        }
        writeFile(file, good);
    }
}

} // namespace
} // namespace vesk::test
