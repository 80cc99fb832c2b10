using System;
using System.Runtime.InteropServices;

namespace Braxel.Vesk
{
    /// <summary>
    /// The SDK's operations. Each returns as soon as its work is queued; results arrive through the
    /// observer. Any thread may call. C# 7.2, no unsafe code, no package.
    /// </summary>
    public static class VeskLogin
    {
        private static readonly object Gate = new object();
        private static ILoginObserver current;
        // What native code holds for the observer: a number, so that a call that comes too late finds
        // nothing instead of freed memory.
        private static long handle;
        private static bool ended;

        // Native code keeps their addresses: they must never be collected.
        private static readonly Native.Function LoginFunction = HandleLogin;
        private static readonly Native.Function BaseFunction = HandleBase;
        private static readonly Native.Function QrCodeFunction = HandleQrCode;

        /// <summary>An observer's method has thrown; on that method's thread.</summary>
        public static event Action<Exception> ObserverFailed;

        /// <summary>The library's version, for example "5.0.000.0005".</summary>
        public static string Version => Native.Text(Native.vesk_version());

        /// <summary>The version as a number to compare: each part a byte.</summary>
        public static uint VersionNumber => Native.vesk_version_number();

        /// <summary>
        /// Sets the one observer of the process; null silences all results. No method of the old one
        /// begins any more when this has returned. Set null before the script domain is unloaded.
        /// </summary>
        public static void SetObserver(ILoginObserver observer)
        {
            lock (Gate)
            {
                CheckAlive();
                current = observer;
                ++handle;
                if (observer == null)
                {
                    Native.vesk_set_login_observer(IntPtr.Zero);
                    return;
                }
                Native.Observer native = new Native.Observer
                {
                    StructSize = (uint)Marshal.SizeOf(typeof(Native.Observer)),
                    User = new IntPtr(handle),
                    OnLogin = Marshal.GetFunctionPointerForDelegate(LoginFunction),
                    OnBase = Marshal.GetFunctionPointerForDelegate(BaseFunction),
                    OnQrCode = Marshal.GetFunctionPointerForDelegate(QrCodeFunction),
                };
                Native.vesk_set_login_observer(ref native);
            }
        }

        /// <summary>Logs the player in through "KZ", "Ferno" or "Steam".</summary>
        public static void Login(
            string channel, string permissions = "", string subChannel = "", string extraJson = "")
        {
            CheckAlive();
            Native.vesk_login(Native.Bytes(channel), Native.Bytes(permissions),
                Native.Bytes(subChannel), Native.Bytes(extraJson));
        }

        /// <summary>Logs in the player that this device remembers; "KZ" only.</summary>
        public static void AutoLogin()
        {
            CheckAlive();
            Native.vesk_auto_login();
        }

        /// <summary>Reads the login that is held now; no network traffic.</summary>
        /// <returns>True when one is held; still look at RetCode: it may have expired.</returns>
        public static bool GetLoginRet(out LoginRet ret)
        {
            CheckAlive();
            IntPtr copy;
            bool held = Native.vesk_get_login_ret(out copy) != 0;
            try
            {
                ret = copy == IntPtr.Zero
                    ? new LoginRet() : new LoginRet(Native.Read<Native.Login>(copy));
            }
            finally
            {
                Native.vesk_login_ret_free(copy);
            }
            return held;
        }

        /// <summary>Logs the player out of the channel and, unless told otherwise, of the backend.</summary>
        public static void Logout(string channel = "", string subChannel = "", bool channelOnly = false)
        {
            CheckAlive();
            Native.vesk_logout(
                Native.Bytes(channel), Native.Bytes(subChannel), channelOnly ? 1 : 0);
        }

        /// <summary>
        /// Ends the SDK, once, when the process ends: the library leaves the process on Windows, and
        /// every later call throws InvalidOperationException. Not for the end of Unity's play mode.
        /// </summary>
        public static void Uninstall()
        {
            lock (Gate)
            {
                CheckAlive();
                ended = true;
                current = null;
            }
            Native.vesk_uninstall();
        }

        private static void CheckAlive()
        {
            if (ended)
            {
                throw new InvalidOperationException("the SDK has been uninstalled");
            }
        }

        [MonoPInvokeCallback(typeof(Native.Function))]
        private static void HandleLogin(IntPtr ret, IntPtr user)
        {
            Deliver(user, observer => observer.OnLogin(new LoginRet(Native.Read<Native.Login>(ret))));
        }

        [MonoPInvokeCallback(typeof(Native.Function))]
        private static void HandleBase(IntPtr ret, IntPtr user)
        {
            Deliver(user, observer => observer.OnBase(new BaseRet(Native.Read<Native.Base>(ret))));
        }

        [MonoPInvokeCallback(typeof(Native.Function))]
        private static void HandleQrCode(IntPtr ret, IntPtr user)
        {
            Deliver(user,
                observer => observer.OnQrCode(new QrCodeRet(Native.Read<Native.QrCode>(ret))));
        }

        // No exception may leave: the caller is native code.
        private static void Deliver(IntPtr user, Action<ILoginObserver> call)
        {
            try
            {
                ILoginObserver observer;
                lock (Gate)
                {
                    observer = user.ToInt64() == handle ? current : null;
                }
                if (observer != null)
                {
                    call(observer);
                }
            }
            catch (Exception failure)
            {
                ReportFailure(failure);
            }
        }

        private static void ReportFailure(Exception failure)
        {
            try
            {
                ObserverFailed?.Invoke(failure);
            }
            catch (Exception)
            {
                // There is nobody left to tell.
            }
        }
    }
}
