// What the pages use of Unity, written by us: enough to see that our side compiles.
namespace UnityEngine
{
    public class Object { public static void DontDestroyOnLoad(Object target) { } }
    public sealed class GameObject : Object { }
    public abstract class MonoBehaviour : Object { protected readonly GameObject gameObject = new GameObject(); }
    public static class Application { public static bool isEditor { get { return true; } } }
    public static class Debug { public static void Log(object message) { } }
}
