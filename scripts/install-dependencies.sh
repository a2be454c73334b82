#!/usr/bin/env bash
# Installs the Debian 12 packages the build and the tests need. Quiet and quick when they are
# already there; run as root or with sudo available.
set -euo pipefail

packages=(
  g++ cmake make ninja-build pkg-config  # the toolchain
  python3                        # the include-rule check (scripts/check-dependencies.py)
  ccache                         # compiled objects kept between builds of the same sources
  libplist-dev                   # property lists: the settings file
  libicu-dev                     # dates in each language's medium style
  libpulse-dev                   # talks to the sound server (PulseAudio or PipeWire's pulse server)
  pulseaudio pulseaudio-utils    # a private sound server and pactl for the tests
  pipewire pipewire-pulse wireplumber pipewire-bin  # the other private sound server the tests run against:
                                 # PipeWire with its pulse server, the default of most Linux desktops
  qt6-base-dev qt6-qpa-plugins libgl-dev  # the user interface (Qt 6 Widgets) and its X11 platform plugin
  libxcb-randr0-dev libxkbcommon-dev  # screens, EDIDs and gamma ramps through RandR
  libxcb-xfixes0-dev             # told at once when a compositor starts or stops, so shades never turn black
  libxcb-xkb-dev                 # held media keys told apart from new presses (detectable auto-repeat)
  xvfb x11-xserver-utils xcompmgr xdotool  # a private X server with monitors, a compositor and key events for the tests
  libsystemd-dev dbus-daemon     # backlight writes through logind on the system bus; a private bus for its tests
  libddcutil-dev                 # external monitors' brightness over DDC/CI: its declarations; the library
                                 # (libddcutil4, pulled in) is loaded only when a monitor needs it
  libgtest-dev                   # unit and integration tests
  libbenchmark-dev               # benchmarks
  libcurl4-openssl-dev           # the update feed, fetched over HTTPS
  libssl-dev                     # the tests' own HTTPS feed server, with a certificate made on the spot
  trayer                         # a tray host on the private X server, so the tray icon shows
  pasystray xbindkeys            # the tray applet and key-binding setup we compare ourselves with
  libxcb-xtest0-dev              # key presses sent straight to the X server by the latency benchmark
  clang libclang-rt-14-dev       # the fuzz targets (libFuzzer)
  valgrind                       # memcheck watches the toolkit's accesses as well as ours in one test
  dpkg-dev fakeroot              # the Debian package: its dependencies (dpkg-shlibdeps), a throwaway install
  desktop-file-utils appstream groff-base  # checks of the installed menu entry, metainfo and manual page
  libplist-utils icnsutils       # the macOS bundle's Info.plist read back, its icon file made and listed
)

missing=()
for package in "${packages[@]}"; do
  if [ "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" != "install ok installed" ]; then
    missing+=("$package")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  sudo="sudo"
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
