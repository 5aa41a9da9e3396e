#!/usr/bin/env bash
# The editor as an LV2 UI inside a real host: jalv (its GTK front end, which
# embeds X11 UIs) on a dummy JACK server, under a private Xvfb. A drag of the
# pad's handle made with XTest (xdotool) must reach the plug-in's control
# inputs: jalv prints the position the plug-in then reports.
# Arguments: bundle directory, the editor's layout header, a scratch directory.
set -euo pipefail
bundle=$1 layout=$2 scratch=$3
uri=urn:zelworks:orvalis-xy3-3d
mkdir -p "$(dirname "$scratch")"
scratch=$(mktemp -d "$scratch.XXXXXX")
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$scratch"
}
trap cleanup EXIT
fail() {
  echo "FAIL: $*" >&2
  tail -n 20 "$scratch"/*.err >&2 || true
  exit 1
}
# within SECONDS COMMAND...: polls until COMMAND succeeds; generous, as a
# loaded machine may take long to start a server.
within() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    [ $SECONDS -lt $end ] || return 1
    sleep 0.2
  done
}
# The layout's numbers, where the editor takes them from.
number() { sed -n "s/.*constexpr int $1 = \([0-9]*\);.*/\1/p" "$layout"; }
read -r pad_left pad_top pad_right < <(sed -n 's/.*Rect kPad{\([0-9]*\), \([0-9]*\), \([0-9]*\),.*/\1 \2 \3/p' "$layout")
width=$(number kWindowWidth) height=$(number kWindowHeight) handle=$(number kHandleSize)

Xvfb -displayfd 3 -screen 0 640x480x24 -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.err" &
pids+=($!)
within 60 test -s "$scratch/display" || fail "Xvfb did not start"
export DISPLAY JACK_DEFAULT_SERVER="zel-lv2-ui-$$" JACK_NO_START_SERVER=1
DISPLAY=":$(cat "$scratch/display")"
export LV2_PATH
LV2_PATH=$(dirname "$bundle")
jackd -r -d dummy -r 48000 -p 256 >"$scratch/jackd.out" 2>"$scratch/jackd.err" &
pids+=($!)
within 60 jack_lsp >/dev/null 2>&1 || fail "jackd did not start"
jalv.gtk3 --print-controls "$uri" >"$scratch/jalv.out" 2>"$scratch/jalv.err" &
pids+=($!)

# The editor's window: the deepest window of the editor's size (jalv's own
# frame around it may have that size too).
editor() {
  xwininfo -root -tree | awk -v size="${width}x${height}" '
    $0 ~ "\\(\\) +" size "\\+" { depth = match($0, /[^ ]/); if (depth > best) { best = depth; id = $1 } }
    END { if (id) print id; else exit 1 }'
}
within 60 editor >/dev/null || fail "jalv shows no editor window"
window=$(editor)
origin() { xwininfo -id "$window" | sed -n "s/.*Absolute upper-left $1: *//p"; }

# jalv prints the reports of every update; the newest x and y count.
arrived() {
  local x y
  x=$(sed -n 's/^x_now = //p' "$scratch/jalv.out" | tail -n 1)
  y=$(sed -n 's/^y_now = //p' "$scratch/jalv.out" | tail -n 1)
  awk -v x="$x" -v y="$y" 'BEGIN { exit !(x > -0.5 && x < 0.5 && y > 1.5 && y < 2.5) }'
}

# A new instance's source is straight ahead (x 4 m, y 0): the handle at the
# top of the pad, in the middle. Dragged 2 m left and 4 m down (the travel of
# the handle's centre is the pad less one handle, for 8 m). jalv may still
# move its window into place as the drag starts, so a drag that changed
# nothing is made again where the window is then.
per_metre=$(((pad_right - pad_left - handle) / 8))
for _ in 1 2 3 4 5 6; do
  x0=$(($(origin X) + (pad_left + pad_right) / 2)) y0=$(($(origin Y) + pad_top + handle / 2))
  xdotool mousemove "$x0" "$y0" mousedown 1 \
    mousemove $((x0 - per_metre)) $((y0 + 2 * per_metre)) \
    mousemove $((x0 - 2 * per_metre)) $((y0 + 4 * per_metre)) mouseup 1
  if within 10 arrived; then
    echo "LV2 UI: opened in jalv, a pad drag moved the plug-in to x 0 m, y 2 m"
    exit 0
  fi
done
fail "the drag did not reach the plug-in: $(grep -E '^[xy]_now' "$scratch/jalv.out" | tail -n 2 | tr '\n' ' ')"
