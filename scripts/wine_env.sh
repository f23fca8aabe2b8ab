# Sourced: a private, quiet Wine with the fonts that the program asks for. Exports MIRELO_WINE, WINEPREFIX.
MIRELO_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export MIRELO_ROOT
export WINEPREFIX=${MIRELO_WINEPREFIX:-$MIRELO_ROOT/build/wineprefix}
export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
MIRELO_WINE=${MIRELO_WINE:-/usr/lib/wine/wine64}
export MIRELO_WINE

# One process makes the prefix, everybody else waits for it. Without the font replacements a layout
# has no height under Wine and no text is drawn.
mirelo_make_prefix() {
    [ -e "$WINEPREFIX/mirelo-ready" ] && return
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        [ -e "$WINEPREFIX/mirelo-ready" ] && exit
        echo "-- making the Wine prefix $WINEPREFIX" >&2
        "$MIRELO_WINE" wineboot --init >/dev/null 2>&1
        local font
        for font in "Microsoft YaHei UI" "Tahoma" "Segoe UI"; do
            "$MIRELO_WINE" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" \
                /d "WenQuanYi Micro Hei" /f >/dev/null 2>&1
        done
        "$MIRELO_WINE" winecfg /v win10 >/dev/null 2>&1
        # What was started without a display would keep every later window invisible.
        /usr/lib/wine/wineserver64 -k || true
        /usr/lib/wine/wineserver64 -w || true
        touch "$WINEPREFIX/mirelo-ready"
    ) 9>"$WINEPREFIX/.lock"
}
mirelo_make_prefix
