// What the pages, the sample and the editor script use of Unity, written by us: enough to see that our
// side compiles, and for tests/package/unity.cs to play the sample.
using System;
using System.IO;
using System.Net;

namespace UnityEngine
{
    public class Object
    {
        public static void DontDestroyOnLoad(Object target) { }
        public static void Destroy(Object target) { ((Texture)target).width = 0; }
    }
    public sealed class GameObject : Object { }
    public abstract class MonoBehaviour : Object { protected readonly GameObject gameObject = new GameObject(); }
    public sealed class SerializeField : Attribute { }
    public static class Application
    {
        public static readonly bool isEditor = false;
        public static readonly string dataPath = Path.GetFullPath("project/Assets");
    }
    public static class Debug
    {
        public static void Log(object message) { Console.WriteLine(message); }
        public static void LogWarning(object message) { Console.WriteLine(message); }
    }
    public struct Rect { public Rect(float x, float y, float width, float height) { } }
    public enum FilterMode { Point }
    public class Texture : Object { public int width, height; public FilterMode filterMode; }
    public sealed class Texture2D : Texture { }
    public sealed class GUILayoutOption { }
    public static class GUILayout
    {
        public static string Text, Press; // what a frame shows, and the button that it presses
        public static void Label(string text, params GUILayoutOption[] options) { Text = text; }
        public static bool Button(string text, params GUILayoutOption[] options)
        {
            bool pressed = text == Press;
            Press = pressed ? "" : Press;
            return pressed;
        }
    }
    public static class GUI
    {
        public static Texture Picture;
        public static void DrawTexture(Rect position, Texture image) { Picture = image; }
    }
    public class AsyncOperation { public event Action<AsyncOperation> completed { add { value(this); } remove { } } }
}

namespace UnityEngine.Networking
{
    public sealed class UnityWebRequestAsyncOperation : AsyncOperation { }
    public sealed class UnityWebRequest : IDisposable
    {
        public enum Result { Success = 1 }
        public readonly Result result = Result.Success;
        public string error = "", url;
        public UnityWebRequestAsyncOperation SendWebRequest() { return new UnityWebRequestAsyncOperation(); }
        public void Dispose() { url = null; }
    }
    public static class UnityWebRequestTexture
    {
        public static UnityWebRequest GetTexture(string url) { return new UnityWebRequest { url = url }; }
    }
    public static class DownloadHandlerTexture
    {
        public static Texture2D GetContent(UnityWebRequest request) // a PNG tells its size, two bytes each
        {
            byte[] png = new WebClient().DownloadData(request.url);
            return new Texture2D { width = png[18] * 256 + png[19], height = png[22] * 256 + png[23] };
        }
    }
}

namespace UnityEditor
{
    public enum BuildTarget { StandaloneWindows64 = 19 }
    public sealed class InitializeOnLoadMethodAttribute : Attribute { }
    namespace PackageManager
    {
        public sealed class PackageInfo
        {
            public readonly string resolvedPath = Path.GetFullPath("package");
            public static PackageInfo FindForAssembly(object assembly) { return new PackageInfo(); }
        }
    }
    namespace Build
    {
        public interface IPostprocessBuildWithReport { void OnPostprocessBuild(Reporting.BuildReport report); }
        public sealed class BuildFailedException : Exception { public BuildFailedException(string message) { } }
    }
    namespace Build.Reporting
    {
        public struct BuildSummary { public BuildTarget platform; public string outputPath; }
        public sealed class BuildReport { public BuildSummary summary; }
    }
}
