using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Braxel.Vesk
{
    /// <summary>
    /// The plain C interface, vesk_c.h and vesk_mainloop.h, as it is. Texts are UTF-8. The library is
    /// for 64 bits only, where there is one calling convention and a pointer is a long.
    /// </summary>
    internal static class Native
    {
        internal const int ResultLogin = 1, ResultQrCode = 3, ResultRefreshed = 4; // of 1 to 4

        private const string Library = "VESKCore";

        [DllImport(Library)] internal static extern IntPtr vesk_version();
        [DllImport(Library)] internal static extern uint vesk_version_number();
        [DllImport(Library)] internal static extern void vesk_login(
            byte[] channel, byte[] permissions, byte[] subChannel, byte[] extraJson);
        [DllImport(Library)] internal static extern void vesk_auto_login();
        [DllImport(Library)] internal static extern int vesk_get_login_ret(out IntPtr loginRet);
        [DllImport(Library)] internal static extern void vesk_login_ret_free(IntPtr loginRet);
        [DllImport(Library)] internal static extern void vesk_logout(
            byte[] channel, byte[] subChannel, int channelOnly);
        [DllImport(Library)] internal static extern void vesk_uninstall();
        [DllImport(Library)] internal static extern int vesk_queue_results(int on);
        [DllImport(Library)] internal static extern int vesk_next_result(out IntPtr result);
        [DllImport(Library)] internal static extern void vesk_result_free(IntPtr result);
        [DllImport(Library)] internal static extern int vesk_cancel_login();
        [DllImport(Library)] internal static extern void vesk_set_login_timeout(uint milliseconds);
        [DllImport(Library)] internal static extern int vesk_wait_idle(uint milliseconds);
        [DllImport(Library)] internal static extern int vesk_state([In, Out] byte[] state);
        [DllImport(Library)] internal static extern int vesk_describe(
            int retCode, int thirdCode, [In, Out] byte[] advice);

        /// <summary>A struct to be filled.</summary>
        internal static byte[] Struct(int size)
        {
            byte[] bytes = new byte[size];
            BitConverter.GetBytes(size).CopyTo(bytes, 0);
            return bytes;
        }

        /// <summary>A text as an argument: UTF-8 with its final zero.</summary>
        internal static byte[] Bytes(string text)
        {
            return Encoding.UTF8.GetBytes((text ?? "") + "\0");
        }

        /// <summary>A text out of a record.</summary>
        internal static string Text(IntPtr text)
        {
            int length = 0;
            while (Marshal.ReadByte(text, length) != 0)
            {
                ++length;
            }
            byte[] bytes = new byte[length];
            Marshal.Copy(text, bytes, 0, length);
            return Encoding.UTF8.GetString(bytes);
        }
    }

    /// <summary>Reads a struct's members one after the other; none of the structs has gaps.</summary>
    internal sealed class StructReader
    {
        private readonly IntPtr structure;
        private int offset = sizeof(uint); // behind struct_size

        internal StructReader(IntPtr structure)
        {
            this.structure = structure;
        }

        internal int Int()
        {
            offset += sizeof(int);
            return Marshal.ReadInt32(structure, offset - sizeof(int));
        }

        internal long Long()
        {
            offset += sizeof(long);
            return Marshal.ReadInt64(structure, offset - sizeof(long));
        }

        internal IntPtr Pointer()
        {
            return new IntPtr(Long());
        }

        internal string Text()
        {
            return Native.Text(Pointer());
        }
    }
}
