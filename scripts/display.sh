# Sourced: a virtual display of its own in DISPLAY; it and the Wine prefix's server end with the script. It must not
# start anew when the last program leaves it: the next one would find no display.
exec {display}< <(exec Xvfb -displayfd 1 -screen 0 1400x1100x24 -nolisten tcp -noreset 2>/dev/null)
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; WINEPREFIX="$WINEPREFIX" /usr/lib/wine/wineserver64 -k 2>/dev/null || true' EXIT
read -r -t 30 number <&"$display"
export DISPLAY=":$number"
