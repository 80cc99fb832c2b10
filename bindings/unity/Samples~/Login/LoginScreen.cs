using System;
using System.Threading;
using UnityEngine;
using UnityEngine.Networking;

namespace Braxel.Vesk.Samples
{
    /// <summary>
    /// A title screen to copy from: add it to an object of an empty scene and press Play.
    /// </summary>
    public sealed class LoginScreen : MonoBehaviour
    {
        private const int ReadableWidth = 250;

        [SerializeField] private string[] channels = { "Steam", "KZ", "Ferno" };

        private string message = "Who are you?";
        private LoginState state;
        private CancellationTokenSource back; // of the login that runs, or null
        private string pictureUrl = ""; // of the newest QR code
        private Texture2D picture; // null until it is there
        private bool quitting;

        private void OnEnable()
        {
            VeskLogin.QrCodeReady += FetchPicture;
            VeskLogin.Refreshed += TellOfRefresh;
        }

        private void OnDisable()
        {
            VeskLogin.QrCodeReady -= FetchPicture;
            VeskLogin.Refreshed -= TellOfRefresh;
        }

        private void Update()
        {
            VeskLogin.Update(); // in here tasks end and events are raised
            state = VeskLogin.State; // kept, as OnGUI runs more than once a frame and has to see the same
        }

        private void OnGUI()
        {
            GUILayout.Label(message);
            if (back != null)
            {
                if (GUILayout.Button("Back"))
                {
                    back.Cancel();
                }
            }
            else if (state == LoginState.SignedIn)
            {
                if (GUILayout.Button("Log out"))
                {
                    LogOut();
                }
            }
            else
            {
                foreach (string channel in channels)
                {
                    if (GUILayout.Button(channel))
                    {
                        LogIn(channel);
                    }
                }
            }
            if (picture != null)
            {
                // By a whole factor: unequal modules are hard to scan.
                int factor = Math.Max(1, ReadableWidth / picture.width);
                GUI.DrawTexture(new Rect(20, 160, picture.width * factor, picture.height * factor), picture);
            }
        }

        private async void LogIn(string channel)
        {
            message = "Logging in through " + channel + " ...";
            back = new CancellationTokenSource();
            try
            {
                LoginRet ret = await VeskLogin.LoginAsync(channel, back.Token);
                // Your game goes on from here: its server checks ret.Openid and ret.Token.
                message = ret.RetCode == VeskError.Success ? "Welcome, " + ret.Openid : Explain(ret);
            }
            catch (OperationCanceledException)
            {
                message = "Who are you?";
            }
            finally
            {
                back = null;
                DropPicture();
            }
        }

        private async void LogOut()
        {
            BaseRet ret = await VeskLogin.LogoutAsync();
            message = ret.RetCode == VeskError.Success ? "Good bye" : Explain(ret);
        }

        private void FetchPicture(QrCodeRet code)
        {
            DropPicture();
            pictureUrl = code.QrCodeUrl;
            message = "Scan the code with " + code.Channel;
            UnityWebRequest request = UnityWebRequestTexture.GetTexture(pictureUrl);
            try
            {
                request.SendWebRequest().completed += done => ShowPicture(request, code.QrCodeUrl);
            }
            catch (InvalidOperationException refused) // plain HTTP, which the player settings forbid
            {
                request.Dispose();
                message = "The code's picture: " + refused.Message;
            }
        }

        private void ShowPicture(UnityWebRequest request, string url)
        {
            using (request)
            {
                bool good = request.result == UnityWebRequest.Result.Success;
                Texture2D texture = good ? DownloadHandlerTexture.GetContent(request) : null;
                if (url != pictureUrl) // the login has ended, or has a newer code
                {
                    Destroy(texture);
                }
                else if (good)
                {
                    texture.filterMode = FilterMode.Point;
                    picture = texture;
                }
                else
                {
                    message = "The code's picture: " + request.error;
                }
            }
        }

        private void DropPicture()
        {
            pictureUrl = "";
            if (picture != null)
            {
                Destroy(picture);
                picture = null;
            }
        }

        private void TellOfRefresh(LoginRet ret)
        {
            if (ret.RetCode != VeskError.Success) // else there is a new token
            {
                message = Explain(ret);
            }
        }

        // For developers; a game has words of its own, by the code.
        private static string Explain(BaseRet ret)
        {
            Advice advice = VeskLogin.Describe(ret.RetCode, ret.ThirdCode);
            Debug.LogWarning("VESK: code " + ret.RetCode + ", " + ret.ThirdCode + " " + ret.ThirdMsg);
            return advice.Meaning + "\n" + advice.Remedy;
        }

        private void OnApplicationQuit()
        {
            quitting = true;
        }

        private void OnDestroy()
        {
            DropPicture();
            if (back != null)
            {
                back.Cancel();
            }
            if (quitting && !Application.isEditor) // in the editor the SDK lives on after play mode
            {
                VeskLogin.WaitIdle(3000); // a logout reaches the backend
                VeskLogin.Uninstall(); // every later call throws
            }
        }
    }
}
