#ifndef VESK_THIRDSDK_KZ_COMAPARTMENT_H
#define VESK_THIRDSDK_KZ_COMAPARTMENT_H

namespace Braxel {
namespace VESK {

/// COM on the calling thread for as long as it lives: a thread that has none joins the
/// multithreaded apartment and leaves it again, one that is in an apartment stays as it is. Make it
/// and let it go on the same thread.
class ComApartment {
public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    const bool mJoined;
};

/// Keeps the process's multithreaded apartment while no thread is in it: COM ends with its last
/// apartment, and with it what a component that lives longer has got from COM. Does nothing before
/// Windows 8, which has no call for it.
class ComKeeper {
public:
    ComKeeper() = default;
    ~ComKeeper();
    ComKeeper(const ComKeeper&) = delete;
    ComKeeper& operator=(const ComKeeper&) = delete;

    void Keep();

private:
    void* mUsage = nullptr;
};

} // namespace VESK
} // namespace Braxel

#endif
