using System;
using System.Collections.Generic;
using System.Threading;
using System.Threading.Tasks;

namespace Braxel.Vesk
{
    /// <summary>
    /// The SDK for a game's main loop: call Update in each frame. Tasks end and events are raised
    /// in there and nowhere else, on the thread that calls it; no thread of the SDK ever runs
    /// managed code. All but WaitIdle, GetLoginRet and Uninstall return at once. Any thread may
    /// call. C# 7.2, no unsafe code, no package.
    /// </summary>
    public static class VeskLogin
    {
        private static readonly object Gate = new object(); // guards what follows
        private static readonly Dictionary<ulong, Action<BaseRet>> Calls =
            new Dictionary<ulong, Action<BaseRet>>(); // those without a result, by number
        private static readonly byte[] StateBuffer = Native.Struct(304); // a vesk_login_state
        private static ulong lastCall; // its number
        private static bool started;
        private static bool ended;

        /// <summary>A login has ended, well or not; also raised for each task of a login.</summary>
        public static event Action<LoginRet> LoginEnded;

        /// <summary>A logout has ended.</summary>
        public static event Action<BaseRet> LogoutEnded;

        /// <summary>Show this code until the login ends; it may come again with another address.</summary>
        public static event Action<QrCodeRet> QrCodeReady;

        /// <summary>The held login has a new token (RetCode 0) or has expired (1002).</summary>
        public static event Action<LoginRet> Refreshed;

        /// <summary>The library's version, for example "5.0.000.0005".</summary>
        public static string Version => Native.Text(Native.vesk_version());

        /// <summary>The version as a number to compare: each part a byte.</summary>
        public static uint VersionNumber => Native.vesk_version_number();

        /// <summary>How things stand; makes no garbage.</summary>
        public static LoginState State => Read(state => (LoginState)BitConverter.ToInt32(state, 4));

        /// <summary>How things stand and who it is.</summary>
        public static LoginStatus Status => Read(state => new LoginStatus(state));

        /// <summary>
        /// Hands out the results that wait. What a handler throws leaves through here; the results
        /// behind it come with the next call.
        /// </summary>
        public static void Update()
        {
            for (Action deliver = Next(); deliver != null; deliver = Next())
            {
                deliver();
            }
        }

        /// <summary>
        /// Logs the player in through "KZ", "Ferno" or "Steam". A login that is still running ends
        /// with LoginOvertaken.
        /// </summary>
        /// <returns>Look at its RetCode: a login that fails is no exception. Cancelled through its
        /// token or by Uninstall, the task is cancelled.</returns>
        public static Task<LoginRet> LoginAsync(
            string channel, CancellationToken cancellation = default(CancellationToken),
            string permissions = "", string subChannel = "", string extraJson = "")
        {
            return Begin(cancellation, () => LoginEnded, () => Native.vesk_login(
                Native.Bytes(channel), Native.Bytes(permissions), Native.Bytes(subChannel),
                Native.Bytes(extraJson)));
        }

        /// <summary>Logs in the player that this device remembers; "KZ" only.</summary>
        public static Task<LoginRet> AutoLoginAsync(
            CancellationToken cancellation = default(CancellationToken))
        {
            return Begin(cancellation, () => LoginEnded, Native.vesk_auto_login);
        }

        /// <summary>Logs the player out of the channel and, unless told otherwise, of the backend.</summary>
        public static Task<BaseRet> LogoutAsync(
            string channel = "", string subChannel = "", bool channelOnly = false)
        {
            return Begin(CancellationToken.None, () => LogoutEnded, () => Native.vesk_logout(
                Native.Bytes(channel), Native.Bytes(subChannel), channelOnly ? 1 : 0));
        }

        /// <summary>
        /// After how long a login ends with LoginTimedOut; 0 is never, five minutes unless set. For
        /// logins that begin later.
        /// </summary>
        public static void SetLoginTimeout(uint milliseconds)
        {
            CheckRunning();
            Native.vesk_set_login_timeout(milliseconds);
        }

        /// <summary>
        /// Waits until nothing of the SDK is under way, a logout for example, at most so long. A login
        /// that waits for a scan is not waited for.
        /// </summary>
        /// <returns>Whether nothing is under way.</returns>
        public static bool WaitIdle(uint milliseconds)
        {
            CheckRunning();
            return Native.vesk_wait_idle(milliseconds) != 0;
        }

        /// <summary>Reads the login that is held now; no network traffic.</summary>
        /// <returns>True when one is held; still look at RetCode: it may have expired.
        /// The record is null when there is no memory for it.</returns>
        public static bool GetLoginRet(out LoginRet ret)
        {
            CheckRunning();
            IntPtr copy;
            bool held = Native.vesk_get_login_ret(out copy) != 0;
            try
            {
                ret = copy == IntPtr.Zero ? null : new LoginRet(new StructReader(copy));
            }
            finally
            {
                Native.vesk_login_ret_free(copy);
            }
            return held;
        }

        /// <summary>Explains the codes of a result.</summary>
        public static Advice Describe(int retCode, int thirdCode)
        {
            CheckRunning();
            return new Advice(retCode, thirdCode);
        }

        /// <summary>
        /// Ends the SDK, once, when the process ends: the library leaves the process on Windows, and
        /// every later call throws InvalidOperationException. Not for the end of Unity's play mode.
        /// </summary>
        public static void Uninstall()
        {
            List<Action<BaseRet>> open;
            lock (Gate)
            {
                CheckRunning();
                ended = true;
                open = new List<Action<BaseRet>>(Calls.Values);
                Calls.Clear();
            }
            Native.vesk_uninstall();
            open.ForEach(end => end(null));
        }

        private static void CheckRunning()
        {
            lock (Gate)
            {
                if (!started)
                {
                    if (Native.vesk_queue_results(1) == 0)
                    {
                        throw new InvalidOperationException("the SDK has ended or cannot start");
                    }
                    // In an editor the library outlives the script domain. Of an earlier one's calls
                    // nobody here waits: their results have numbers that are not in Calls.
                    Native.vesk_cancel_login();
                    started = true;
                    lastCall = Read(state => BitConverter.ToUInt64(state, 8));
                }
                if (ended)
                {
                    throw new InvalidOperationException("the SDK has been uninstalled");
                }
            }
        }

        private static T Read<T>(Func<byte[], T> read)
        {
            lock (Gate)
            {
                CheckRunning();
                Native.vesk_state(StateBuffer);
                return read(StateBuffer);
            }
        }

        // Makes a call, whose result ends the task and is raised as an event.
        private static Task<T> Begin<T>(
            CancellationToken cancellation, Func<Action<T>> handlers, Action call) where T : BaseRet
        {
            if (cancellation.IsCancellationRequested)
            {
                return Task.FromCanceled<T>(cancellation);
            }
            TaskCompletionSource<T> task = new TaskCompletionSource<T>();
            ulong number;
            lock (Gate)
            {
                CheckRunning();
                call();
                number = Read(state => BitConverter.ToUInt64(state, 8));
                if (number == lastCall)
                {
                    throw new InvalidOperationException("the SDK has ended or has no memory");
                }
                lastCall = number;
                Calls.Add(number, ret =>
                {
                    if (ret == null // the SDK has ended
                        || (ret.RetCode == VeskError.LoginCancelled
                            && cancellation.IsCancellationRequested))
                    {
                        task.TrySetCanceled(cancellation);
                    }
                    task.TrySetResult((T)ret); // unless it is cancelled
                    if (ret != null)
                    {
                        handlers()?.Invoke((T)ret);
                    }
                });
            }
            CancellationTokenRegistration registration = cancellation.Register(() => Cancel(number));
            task.Task.ContinueWith(done => registration.Dispose(), CancellationToken.None,
                TaskContinuationOptions.ExecuteSynchronously, TaskScheduler.Default);
            return task.Task;
        }

        private static void Cancel(ulong login)
        {
            lock (Gate)
            {
                if (Calls.ContainsKey(login)
                    && Read(state => BitConverter.ToUInt64(state, 296)) == login)
                {
                    Native.vesk_cancel_login();
                }
            }
        }

        // What to do about the oldest result that is for somebody here; null when none waits.
        private static Action Next()
        {
            lock (Gate)
            {
                CheckRunning();
                Action delivery = null;
                IntPtr result;
                while (delivery == null && Native.vesk_next_result(out result) != 0)
                {
                    try
                    {
                        delivery = Delivery(new StructReader(result));
                    }
                    finally
                    {
                        Native.vesk_result_free(result);
                    }
                }
                return delivery;
            }
        }

        private static Action Delivery(StructReader result)
        {
            int kind = result.Int();
            ulong number = (ulong)result.Long();
            IntPtr login = result.Pointer(), logout = result.Pointer(), code = result.Pointer();
            if (kind == Native.ResultRefreshed)
            {
                LoginRet refreshed = new LoginRet(new StructReader(login));
                return () => Refreshed?.Invoke(refreshed);
            }
            Action<BaseRet> end;
            if (kind > Native.ResultRefreshed || !Calls.TryGetValue(number, out end))
            {
                return null; // a kind of a newer library, or an earlier script domain's
            }
            if (kind == Native.ResultQrCode)
            {
                QrCodeRet qrCode = new QrCodeRet(new StructReader(code));
                return () => QrCodeReady?.Invoke(qrCode);
            }
            BaseRet ret = kind == Native.ResultLogin ? new LoginRet(new StructReader(login))
                : new BaseRet(new StructReader(logout));
            Calls.Remove(number);
            return () => end(ret);
        }
    }
}
