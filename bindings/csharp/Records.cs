using System;
using System.Text;

namespace Braxel.Vesk
{
    /// <summary>Values of RetCode; docs/codes.md says what to do about each.</summary>
    public static class VeskError
    {
        public const int Success = 0;
        public const int NoLogin = 1;
        public const int NetworkError = 4;
        public const int ServerError = 5;
        public const int AutoLoginNotAllowed = 7;
        public const int ChannelInitFailed = 17;
        public const int NeedRealName = 20;
        public const int NetworkResponseError = 24;
        public const int NoStoredLogin = 1001;
        public const int TokenExpired = 1002;
        public const int ChannelLoginFailed = 9999;
        public const int LoginCancelled = 10001;
        public const int LoginTimedOut = 10002;
        public const int UnknownChannel = 10003;
        public const int LoginOvertaken = 10004;
    }

    /// <summary>Who or what is behind a code.</summary>
    public enum Cause
    {
        None, Configuration, Network, Backend, ChannelComponent, Player, Clock, Programming
    }

    /// <summary>What a pair of codes means and what to do about it, for logs and developers.</summary>
    public sealed class Advice
    {
        public readonly Cause Cause;
        /// <summary>Trying again without a change can help.</summary>
        public readonly bool CanRetry;
        /// <summary>How long to wait before that, in milliseconds.</summary>
        public readonly uint RetryAfter;
        public readonly string Meaning;
        public readonly string Remedy;

        internal Advice(int retCode, int thirdCode)
        {
            byte[] advice = Native.Struct(40);
            Native.vesk_describe(retCode, thirdCode, advice);
            Cause = (Cause)BitConverter.ToInt32(advice, 4);
            CanRetry = BitConverter.ToInt32(advice, 8) != 0;
            RetryAfter = BitConverter.ToUInt32(advice, 12);
            Meaning = Native.Text(new IntPtr(BitConverter.ToInt64(advice, 24)));
            Remedy = Native.Text(new IntPtr(BitConverter.ToInt64(advice, 32)));
        }
    }

    /// <summary>How things stand. Expired: the held login's token is past its time.</summary>
    public enum LoginState { SignedOut, LoggingIn, WaitingForScan, SignedIn, Expired }

    /// <summary>How things stood at one moment.</summary>
    public sealed class LoginStatus
    {
        public readonly LoginState State;
        /// <summary>Unix seconds; 0 = unknown, or nobody is signed in.</summary>
        public readonly long TokenExpire;
        /// <summary>Of the running login, else of the held one; or empty.</summary>
        public readonly string Channel;
        /// <summary>Of the held login; or empty.</summary>
        public readonly string Openid;

        internal LoginStatus(byte[] state)
        {
            State = (LoginState)BitConverter.ToInt32(state, 4);
            TokenExpire = BitConverter.ToInt64(state, 16);
            Channel = Text(state, 24);
            Openid = Text(state, 40);
        }

        private static string Text(byte[] state, int begin)
        {
            return Encoding.UTF8.GetString(state, begin, Array.IndexOf(state, (byte)0, begin) - begin);
        }
    }

    /// <summary>What every result carries. Records are copies, yours to keep.</summary>
    public class BaseRet
    {
        /// <summary>112 login, 114 GetLoginRet, 117 logout, 122 QR code.</summary>
        public readonly int MethodNameID;
        /// <summary>A value of VeskError; -1 not set.</summary>
        public readonly int RetCode;
        /// <summary>A code from outside; -1 when there is none.</summary>
        public readonly int ThirdCode;
        public readonly string RetMsg;
        public readonly string ThirdMsg;
        public readonly string ExtraJson;

        internal BaseRet(StructReader ret)
        {
            MethodNameID = ret.Int();
            RetCode = ret.Int();
            ThirdCode = ret.Int();
            RetMsg = ret.Text();
            ThirdMsg = ret.Text();
            ExtraJson = ret.Text();
        }
    }

    /// <summary>The result of a login; vesk_c.h explains the members.</summary>
    public sealed class LoginRet : BaseRet
    {
        public readonly long TokenExpire;
        public readonly int FirstLogin;
        public readonly int Gender;
        public readonly bool RealNameAuth;
        public readonly int ChannelID;
        public readonly string Channel;
        public readonly string ChannelInfo;
        public readonly string Openid;
        /// <summary>A secret: do not log or show it.</summary>
        public readonly string Token;
        public readonly string RegChannelDis;
        public readonly string UserName;
        public readonly string Birthdate;
        public readonly string PictureUrl;
        public readonly string Pf;
        public readonly string PfKey;

        internal LoginRet(StructReader ret) : base(ret)
        {
            TokenExpire = ret.Long();
            FirstLogin = ret.Int();
            Gender = ret.Int();
            RealNameAuth = ret.Int() != 0;
            ChannelID = ret.Int();
            Channel = ret.Text();
            ChannelInfo = ret.Text();
            Openid = ret.Text();
            Token = ret.Text();
            RegChannelDis = ret.Text();
            UserName = ret.Text();
            Birthdate = ret.Text();
            PictureUrl = ret.Text();
            Pf = ret.Text();
            PfKey = ret.Text();
        }
    }

    /// <summary>A QR code that the player is to scan.</summary>
    public sealed class QrCodeRet : BaseRet
    {
        public readonly int ChannelID;
        public readonly string Channel;
        public readonly string QrCodeUrl;

        internal QrCodeRet(StructReader ret) : base(ret)
        {
            ChannelID = ret.Int();
            ret.Int(); // reserved
            Channel = ret.Text();
            QrCodeUrl = ret.Text();
        }
    }
}
