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
    }

    /// <summary>What every result carries. Records are copies, yours to keep.</summary>
    public class BaseRet
    {
        /// <summary>112 login, 114 GetLoginRet, 117 logout, 122 QR code.</summary>
        public readonly int MethodNameID;
        /// <summary>A value of VeskError; -1 not set.</summary>
        public readonly int RetCode = -1;
        /// <summary>A code from outside; -1 when there is none.</summary>
        public readonly int ThirdCode = -1;
        public readonly string RetMsg = "";
        public readonly string ThirdMsg = "";
        public readonly string ExtraJson = "";

        internal BaseRet() { }

        internal BaseRet(Native.Base ret)
        {
            MethodNameID = ret.MethodNameID;
            RetCode = ret.RetCode;
            ThirdCode = ret.ThirdCode;
            RetMsg = Native.Text(ret.RetMsg);
            ThirdMsg = Native.Text(ret.ThirdMsg);
            ExtraJson = Native.Text(ret.ExtraJson);
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
        public readonly string Channel = "";
        public readonly string ChannelInfo = "";
        public readonly string Openid = "";
        /// <summary>A secret: do not log or show it.</summary>
        public readonly string Token = "";
        public readonly string RegChannelDis = "";
        public readonly string UserName = "";
        public readonly string Birthdate = "";
        public readonly string PictureUrl = "";
        public readonly string Pf = "";
        public readonly string PfKey = "";

        internal LoginRet() { }

        internal LoginRet(Native.Login ret) : base(ret.Base)
        {
            TokenExpire = ret.TokenExpire;
            FirstLogin = ret.FirstLogin;
            Gender = ret.Gender;
            RealNameAuth = ret.RealNameAuth != 0;
            ChannelID = ret.ChannelID;
            Channel = Native.Text(ret.Channel);
            ChannelInfo = Native.Text(ret.ChannelInfo);
            Openid = Native.Text(ret.Openid);
            Token = Native.Text(ret.Token);
            RegChannelDis = Native.Text(ret.RegChannelDis);
            UserName = Native.Text(ret.UserName);
            Birthdate = Native.Text(ret.Birthdate);
            PictureUrl = Native.Text(ret.PictureUrl);
            Pf = Native.Text(ret.Pf);
            PfKey = Native.Text(ret.PfKey);
        }
    }

    /// <summary>A QR code that the player is to scan.</summary>
    public sealed class QrCodeRet : BaseRet
    {
        public readonly int ChannelID;
        public readonly string Channel;
        public readonly string QrCodeUrl;

        internal QrCodeRet(Native.QrCode ret) : base(ret.Base)
        {
            ChannelID = ret.ChannelID;
            Channel = Native.Text(ret.Channel);
            QrCodeUrl = Native.Text(ret.QrCodeUrl);
        }
    }
}
