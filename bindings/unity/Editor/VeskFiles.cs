using System;
using System.IO;
using UnityEditor;
using UnityEditor.Build;
using UnityEditor.Build.Reporting;
using UnityEngine;
using PackageInfo = UnityEditor.PackageManager.PackageInfo;

namespace Braxel.Vesk.Editor
{
    /// <summary>
    /// The SDK looks for its settings and the channels' components beside its library and nowhere
    /// else. A project has them in its folder Vesk, beside Assets: from there they go to the library
    /// of the editor whenever scripts are loaded, and to that of each game that is built.
    /// </summary>
    public sealed class VeskFiles : IPostprocessBuildWithReport
    {
        private static readonly string Library = Path.Combine("Plugins", "x86_64");

        private static string ProjectFolder
        {
            get { return Path.Combine(Path.GetDirectoryName(Application.dataPath), "Vesk"); }
        }

        public int callbackOrder
        {
            get { return 0; }
        }

        public void OnPostprocessBuild(BuildReport report)
        {
            if (report.summary.platform != BuildTarget.StandaloneWindows64)
            {
                return;
            }
            string game = report.summary.outputPath; // .../Game.exe
            string folder = Path.Combine(Path.ChangeExtension(game, null) + "_Data", Library);
            if (!Directory.Exists(folder))
            {
                throw new BuildFailedException("VESK: its files belong beside VESKCore.dll, but there is"
                    + " no folder " + folder);
            }
            Copy(ProjectFolder, folder);
        }

        [InitializeOnLoadMethod]
        private static void ServeTheEditor()
        {
            string package = PackageInfo.FindForAssembly(typeof(VeskFiles).Assembly).resolvedPath;
            if (!Directory.Exists(ProjectFolder))
            {
                Directory.CreateDirectory(ProjectFolder);
                Copy(Path.Combine(package, "Vesk~"), ProjectFolder);
                Debug.Log("VESK: put your settings into " + ProjectFolder);
            }
            Copy(ProjectFolder, Path.Combine(package, Library));
        }

        private static void Copy(string from, string to)
        {
            foreach (string name in Directory.GetFiles(from))
            {
                FileInfo file = new FileInfo(name);
                FileInfo copy = new FileInfo(Path.Combine(to, file.Name));
                if (copy.Exists && copy.Length == file.Length && copy.LastWriteTimeUtc == file.LastWriteTimeUtc)
                {
                    continue;
                }
                try
                {
                    // Version control may keep the project's file read-only, the next copy overwrites.
                    file.CopyTo(copy.FullName, true).IsReadOnly = false;
                }
                catch (Exception failure) when (failure is IOException || failure is UnauthorizedAccessException)
                {
                    Debug.LogWarning("VESK: if the editor uses this component, restart it. " + failure.Message);
                }
            }
        }
    }
}
