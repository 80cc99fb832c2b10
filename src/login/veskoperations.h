#ifndef VESK_LOGIN_VESKOPERATIONS_H
#define VESK_LOGIN_VESKOPERATIONS_H

#include <functional>
#include <string>

namespace Braxel {
namespace VESK {

/// Hears under which sequence id an operation is about to begin; false lets it not begin.
using Begins = std::function<bool(const std::string& seqID)>;

// What the facade's operations of these names do, without its guards. They may throw for want of
// memory. No text is null.

void RunLogin(const char* channel, const char* permissions, const char* subChannel,
              const char* extraJson, const Begins& begins = nullptr);
void RunAutoLogin(const Begins& begins = nullptr);
void RunLogout(const char* channel, const char* subChannel, bool channelOnly,
               const Begins& begins = nullptr);

/// From now on results go where they belong: to the sink or the observer.
void ListenForResults();

} // namespace VESK
} // namespace Braxel

#endif
