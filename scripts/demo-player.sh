# shellcheck shell=bash
# Usage: source scripts/demo-player.sh, set $channel and $folder, then describeChannel, playerArrives ...
# The channels as the demo knows them, and the player in front of the screen: what the stand-in of
# the channel's client is told to do.

channel=
folder=
controlUrl=
interactive=no
pictureUrl=
firstToken=
secondToken=

# Sets what is different from channel to channel. Nobody who confirms by hand waits for a refresh.
# shellcheck disable=SC2034
describeChannel() {
    refreshes=yes
    words=(login status watch status logout)
    firstToken="first-$channel-token"
    secondToken="second-$channel-token"
    # Just more than the four minutes after which the SDK's next tick looks.
    jump=241
    case "$channel" in
        KZ)
            componentSource=kz_full/KZOpenSDK.dll
            componentWords="a stand-in for the KZ messenger; kz_sim.ini says what its player does"
            # At most 540 seconds may be left when the SDK looks.
            tokenLifetime=600
            ;;
        Ferno)
            componentSource=ferno_full/frlogin.dll
            componentWords="a stand-in for the Ferno messenger; ferno_sim.ini says what its player does"
            # At most 60 seconds may be left when the SDK looks.
            tokenLifetime=300
            ;;
        Steam)
            componentSource=steam_api64.dll
            componentWords="a stand-in for the Steam client; steam_sim.ini says who is signed in"
            refreshes=no
            words=(login status logout)
            ;;
    esac
    if [[ "$interactive" == yes ]]; then
        refreshes=no
        words=(login status logout)
    fi
}

# Tells the messenger's stand-in which token it has now.
writePlayer() {
    case "$channel" in
        KZ) printf '%s\n' \
            "on_qrcode=20:info:1:$pictureUrl,700:result:0:2,300:result:0:3" \
            openid=kz-player "ctk=$1" >"$folder/kz_sim.ini.new" ;;
        Ferno) printf '%s\n' \
            "on_qrcode=20:qr:$pictureUrl,400:scanned,200:success" \
            openid=ferno-player "ctt=$1" >"$folder/ferno_sim.ini.new" ;;
    esac
    # In one step: the stand-in may be reading.
    mv "$folder/${channel,,}_sim.ini.new" "$folder/${channel,,}_sim.ini"
}

# The stand-in asks the scan page what the player does.
playerSitsAtTheConsole() {
    printf 'interactive=%s\n' "$controlUrl" >"$folder/${channel,,}_sim.ini"
}

playerArrives() {
    if [[ "$interactive" == yes ]]; then
        playerSitsAtTheConsole
    elif [[ "$channel" == Steam ]]; then
        printf '%s\n' running=1 init=1 steamid=76561198000000001 ticket=0AFF \
            >"$folder/steam_sim.ini"
    else
        # The backend serves a picture to whoever registers a code.
        pictureUrl="$(jq -n --arg channel "$channel" '{$channel}' |
            askBackend sessions -H 'Content-Type: application/json' --data-binary @- |
            jq -r .picture)" || giveUp "the backend makes no QR picture"
        writePlayer "$firstToken"
    fi
}

playerGetsNewToken() {
    writePlayer "$secondToken"
}

# Draws what is on the picture that the game shows. Blocks of text do, where they can be shown.
showQrCode() {
    local url="$1" content
    content="$(askBackend sessions | jq -re '.[-1].qrcode')" || giveUp "the backend knows no QR code"
    askBackend "${url#"$controlUrl/"}" >"$folder/qrcode.png" || giveUp "there is no picture at $url"
    say "   qrcode: the game shows it, and $2: $url"
    if [[ "$(locale charmap)" == UTF-8 ]]; then
        qrencode -t UTF8 -m 1 "$content" | sed 's/^/       /'
    else
        say "       (no drawing: this terminal has no UTF-8)"
    fi
}
