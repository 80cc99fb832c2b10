using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Braxel.Vesk
{
    /// <summary>The plain C interface, vesk_c.h, as it is. Texts are UTF-8.</summary>
    internal static class Native
    {
        private const string Library = "VESKCore";

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        internal delegate void Function(IntPtr ret, IntPtr user);

        [StructLayout(LayoutKind.Sequential)]
        internal struct Observer
        {
            internal uint StructSize;
            internal IntPtr User, OnLogin, OnBase, OnQrCode;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct Base
        {
            internal uint StructSize;
            internal int MethodNameID, RetCode, ThirdCode;
            internal IntPtr RetMsg, ThirdMsg, ExtraJson;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct Login
        {
            internal Base Base;
            internal long TokenExpire;
            internal int FirstLogin, Gender, RealNameAuth, ChannelID;
            internal IntPtr Channel, ChannelInfo, Openid, Token, RegChannelDis;
            internal IntPtr UserName, Birthdate, PictureUrl, Pf, PfKey;
        }

        [StructLayout(LayoutKind.Sequential)]
        internal struct QrCode
        {
            internal Base Base;
            internal int ChannelID, Reserved;
            internal IntPtr Channel, QrCodeUrl;
        }

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern IntPtr vesk_version();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern uint vesk_version_number();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern int vesk_set_login_observer(ref Observer observer);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern int vesk_set_login_observer(IntPtr none);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vesk_login(
            byte[] channel, byte[] permissions, byte[] subChannel, byte[] extraJson);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vesk_auto_login();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern int vesk_get_login_ret(out IntPtr loginRet);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vesk_login_ret_free(IntPtr loginRet);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vesk_logout(byte[] channel, byte[] subChannel, int channelOnly);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vesk_uninstall();

        /// <summary>A text as an argument: UTF-8 with its final zero.</summary>
        internal static byte[] Bytes(string text)
        {
            return Encoding.UTF8.GetBytes((text ?? "") + "\0");
        }

        /// <summary>A text out of a record.</summary>
        internal static string Text(IntPtr text)
        {
            if (text == IntPtr.Zero)
            {
                return "";
            }
            int length = 0;
            while (Marshal.ReadByte(text, length) != 0)
            {
                ++length;
            }
            byte[] bytes = new byte[length];
            Marshal.Copy(text, bytes, 0, length);
            return Encoding.UTF8.GetString(bytes);
        }

        /// <summary>A record. An older library's is shorter; what it lacks is zero.</summary>
        internal static T Read<T>(IntPtr record) where T : struct
        {
            byte[] bytes = new byte[Marshal.SizeOf(typeof(T))];
            Marshal.Copy(record, bytes, 0, Math.Min(bytes.Length, Marshal.ReadInt32(record)));
            GCHandle pinned = GCHandle.Alloc(bytes, GCHandleType.Pinned);
            try
            {
                return (T)Marshal.PtrToStructure(pinned.AddrOfPinnedObject(), typeof(T));
            }
            finally
            {
                pinned.Free();
            }
        }
    }
}
