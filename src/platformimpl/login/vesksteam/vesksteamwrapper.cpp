#include "platformimpl/login/vesksteam/vesksteamwrapper.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/file/veskfileutils.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kSteamFile = "steam_api64.dll";
constexpr int32_t kTicketBufferSize = 1024;

using BoolFunction = bool (*)();
using VoidFunction = void (*)();
using RestartFunction = bool (*)(uint32_t appID);
using UserFunction = void* (*)();
using SteamIDFunction = uint64_t (*)(void* user);
using TicketFunction = uint32_t (*)(void* user, void* buffer, int32_t size, uint32_t* written);
using CancelFunction = void (*)(void* user, uint32_t ticket);

std::string UpperHex(const unsigned char* bytes, size_t length) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * length);
    for (size_t i = 0; i < length; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0F];
    }
    return text;
}

} // namespace

os::DynamicLibrary VESKSteamWrapper::Library() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mLibrary;
}

bool VESKSteamWrapper::LoadLibraryFile() {
    const std::string directory = VESKFileUtils::GetInstance()->GetLibraryDirectory();
    const std::string path = directory + kSteamFile;
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Init Steam SDK from path:%s", path.c_str());
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Start load Steam SDK from path:%s",
                  path.c_str());
    os::DynamicLibrary library;
    // A bare name would be searched for elsewhere.
    if (directory.empty() || !library.Open(path)) {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Load %s failed", kSteamFile);
        return false;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Load %s success", kSteamFile);
    const std::lock_guard<VESKMutex> lock(mMutex);
    mLibrary = library;
    return true;
}

void VESKSteamWrapper::AskWhetherRunning() {
    const auto isRunning = Library().Find<BoolFunction>("SteamAPI_IsSteamRunning");
    if (isRunning == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Get SteamAPI_IsSteamRunning func failed");
        return;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Call SteamAPI_IsSteamRunning");
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Steam Client is running:%d",
                  isRunning() ? 1 : 0);
}

bool VESKSteamWrapper::MustRestart(uint32_t appID) {
    if (appID == 0) {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi",
                      "No STEAM_APP_ID in VESKConfig.ini, don't call "
                      "SteamAPI_RestartAppIfNecessary");
        return false;
    }
    const auto restart = Library().Find<RestartFunction>("SteamAPI_RestartAppIfNecessary");
    if (restart == nullptr) {
        VESK_LOG_ERROR("VESKSteamWrapper::InitSteamApi",
                       "Get SteamAPI_RestartAppIfNecessary func failed");
        return false;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Call SteamAPI_RestartAppIfNecessary");
    if (!restart(appID)) {
        return false;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi",
                  "Stop Init Steam SDK, need to restart from Steam Client!");
    return true;
}

bool VESKSteamWrapper::InitSteamApi(const std::string& appID) {
    VESKComponentLife::Start start(mLife);
    if (!start) {
        return mLife.IsRunning();
    }
    if (!StartSteamApi(appID)) {
        return false;
    }
    if (!start.Publish()) {
        mLife.Depart({[this] { return Shutdown(); }, [] { return true; }});
        return false;
    }
    return true;
}

bool VESKSteamWrapper::StartSteamApi(const std::string& appID) {
    if (!LoadLibraryFile()) {
        return false;
    }
    AskWhetherRunning();
    const uint32_t number = static_cast<uint32_t>(std::atoi(appID.c_str()));
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Init Steam SDK, appid:%s uint32 appid:%d",
                  appID.c_str(), static_cast<int>(number));
    if (MustRestart(number)) {
        return false;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Start to Init Steam SDK");
    const auto init = Library().Find<BoolFunction>("SteamAPI_Init");
    if (init == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Get SteamAPI_Init func failed");
        return false;
    }
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Call SteamAPI_Init");
    const bool result = init();
    VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Init Steam SDK result:%d", result ? 1 : 0);

    const auto user = Library().Find<UserFunction>("SteamAPI_SteamUser_v020");
    if (user == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Get SteamAPI_SteamUser_v020 func failed");
        steam_user_ = nullptr;
    } else {
        VESK_LOG_INFO("VESKSteamWrapper::InitSteamApi", "Call SteamAPI_SteamUser_v020");
        steam_user_ = user();
    }
    return result;
}

std::string VESKSteamWrapper::FetchSteamID() {
    const VESKComponentLife::Call call(mLife);
    void* user = call ? steam_user_.load() : nullptr;
    if (user == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::GetSteamID", "steam_user_ is NULL");
        return {};
    }
    const auto getID = Library().Find<SteamIDFunction>("SteamAPI_ISteamUser_GetSteamID");
    if (getID == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::GetSteamID",
                      "Get SteamAPI_ISteamUser_GetSteamID func failed");
        return {};
    }
    VESK_LOG_INFO("VESKSteamWrapper::GetSteamID", "Call SteamAPI_ISteamUser_GetSteamID");
    // Deliberate: the 64 bits are printed as a signed number.
    const long long number = static_cast<long long>(getID(user));
    std::string steamID = std::to_string(number);
    VESK_LOG_INFO("VESKSteamWrapper::GetSteamID", "Get Steam ID from SDK:%lld %s", number,
                  steamID.c_str());
    return steamID;
}

std::string VESKSteamWrapper::GetSteamID() {
    VESK_LOG_INFO("VESKSteamWrapper::GetSteamID", "Start get Steam ID");
    std::string steamID = Cached(mSteamID);
    if (steamID.empty()) {
        steamID = FetchSteamID();
        Cache(mSteamID, steamID);
    }
    VESK_LOG_INFO("VESKSteamWrapper::GetSteamID", "Get Steam ID:%s", steamID.c_str());
    return steamID;
}

std::string VESKSteamWrapper::FetchTicket() {
    const VESKComponentLife::Call call(mLife);
    void* user = call ? steam_user_.load() : nullptr;
    if (user == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket", "steam_user_ is NULL");
        return {};
    }
    const auto getTicket =
        Library().Find<TicketFunction>("SteamAPI_ISteamUser_GetAuthSessionTicket");
    if (getTicket == nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket",
                      "Get SteamAPI_ISteamUser_GetAuthSessionTicket func failed");
        return {};
    }
    unsigned char buffer[kTicketBufferSize] = {};
    uint32_t size = 0;
    VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket",
                  "Call SteamAPI_ISteamUser_GetAuthSessionTicket");
    const uint32_t handle = getTicket(user, buffer, kTicketBufferSize, &size);
    mAuthTicket = handle;
    if (handle == 0) {
        VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket",
                      "Get auth session ticket from Steam SDK error!");
        return {};
    }
    // Never past the buffer, whatever the component says.
    size = std::min<uint32_t>(size, kTicketBufferSize);
    std::string ticket = UpperHex(buffer, size);
    VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket",
                  "Get auth session ticket from Steam SDK, authTicket:%d size:%d ticket length:%d",
                  static_cast<int>(handle), static_cast<int>(size),
                  static_cast<int>(ticket.size()));
    return ticket;
}

std::string VESKSteamWrapper::GetAuthSessionTicket() {
    VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket", "Start get auth session ticket");
    std::string ticket = Cached(mTicket);
    if (ticket.empty()) {
        ticket = FetchTicket();
        Cache(mTicket, ticket);
    }
    VESK_LOG_INFO("VESKSteamWrapper::GetAuthSessionTicket", "Get auth session ticket:%s",
                  ticket.c_str());
    return ticket;
}

std::string VESKSteamWrapper::Cached(const std::string& text) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return text;
}

void VESKSteamWrapper::Cache(std::string& text, const std::string& value) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    text = value;
}

void VESKSteamWrapper::CancelTicket() {
    const VESKComponentLife::Call call(mLife);
    void* user = call ? steam_user_.load() : nullptr;
    if (user == nullptr) {
        return;
    }
    const auto cancel = Library().Find<CancelFunction>("SteamAPI_ISteamUser_CancelAuthTicket");
    if (cancel != nullptr) {
        VESK_LOG_INFO("VESKSteamWrapper::Logout", "Call SteamAPI_ISteamUser_CancelAuthTicket");
        cancel(user, mAuthTicket);
    } else {
        VESK_LOG_INFO("VESKSteamWrapper::Logout",
                      "Get SteamAPI_ISteamUser_CancelAuthTicket func failed");
    }
}

void VESKSteamWrapper::Logout() {
    VESK_LOG_INFO("VESKSteamWrapper::Logout", "Start Steam logout");
    CancelTicket();
    Cache(mSteamID, "");
    Cache(mTicket, "");
    VESK_LOG_INFO("VESKSteamWrapper::Logout", "Steam logout done");
}

void VESKSteamWrapper::UnInitSteamApi() {
    VESK_LOG_INFO("VESKSteamWrapper::UnInitSteamApi", "UnInit Steam SDK");
    using Stage = VESKComponentLife::Stage;
    const Stage stage = mLife.End();
    // A library that is loaded is shut down even though its interface has not come up; one that
    // another thread starts just now, by that thread.
    if (stage == Stage::kRunning || (stage == Stage::kIdle && Library().IsOpen())) {
        mLife.Depart({[this] { return Shutdown(); }, [] { return true; }});
    }
}

bool VESKSteamWrapper::Shutdown() {
    const auto shutdown = Library().Find<VoidFunction>("SteamAPI_Shutdown");
    if (shutdown == nullptr) {
        // Deliberate: the text names the init entry point.
        VESK_LOG_INFO("VESKSteamWrapper::UnInitSteamApi", "Get SteamAPI_Init func failed");
        return true; // nothing of it ever calls back
    }
    VESK_LOG_INFO("VESKSteamWrapper::UnInitSteamApi", "Call SteamAPI_Shutdown");
    shutdown();
    VESK_LOG_INFO("VESKSteamWrapper::UnInitSteamApi", "UnInit Steam SDK success");
    return true;
}

} // namespace VESK
} // namespace Braxel
