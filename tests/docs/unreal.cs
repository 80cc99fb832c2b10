// What the pages use of Unreal's build tool, written by us: enough to see that our side compiles.
using System.Collections.Generic;

namespace UnrealBuildTool
{
    public sealed class ReadOnlyTargetRules { }
    public enum StagedFileType { UFS, NonUFS }
    public sealed class RuntimeDependencyList
    {
        public void Add(string path, StagedFileType type) { }
    }
    public abstract class ModuleRules
    {
        protected ModuleRules(ReadOnlyTargetRules target) { }
        public enum PCHUsageMode { UseExplicitOrSharedPCHs }
        public PCHUsageMode PCHUsage;
        public string PluginDirectory = "";
        public readonly List<string> PrivateDependencyModuleNames = new List<string>();
        public readonly List<string> PublicSystemIncludePaths = new List<string>();
        public readonly List<string> PublicAdditionalLibraries = new List<string>();
        public readonly List<string> PublicDelayLoadDLLs = new List<string>();
        public readonly RuntimeDependencyList RuntimeDependencies = new RuntimeDependencyList();
    }
}
