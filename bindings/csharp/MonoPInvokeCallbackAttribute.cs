using System;

namespace Braxel.Vesk
{
    /// <summary>
    /// Marks static methods that native code calls. Compilers that translate ahead of time look for
    /// an attribute of this name, in whatever namespace.
    /// </summary>
    [AttributeUsage(AttributeTargets.Method)]
    internal sealed class MonoPInvokeCallbackAttribute : Attribute
    {
        public MonoPInvokeCallbackAttribute(Type type) { }
    }
}
