#!/usr/bin/env bash
# The Debian package as a user gets it: built by CPack from a build folder, installed by dpkg into
# a throwaway root, and run from there. Each step is one test of its own (see CMakeLists.txt
# beside this file); they share one work folder, so that the package is built and installed once.
#
#   deb_package_test.sh STEP BUILD_DIR SOURCE_DIR WORK_DIR
#
# Exit status 77 means the step was skipped because a tool it needs is not installed.
set -euo pipefail

[ $# -eq 4 ] || { echo "usage: $0 STEP BUILD_DIR SOURCE_DIR WORK_DIR" >&2; exit 2; }
step=$1
build=$2
source=$3
work=$4

root=$work/root
program=$root/usr/bin/vantle-control
app_id=org.orlend.VantleControl
skipped=77

fail() {
  echo "FAIL: $*" >&2
  exit 1
}

the_package() {
  local found=("$work"/package/vantle-control_*_*.deb)
  [ -f "${found[0]}" ] || fail "no package in $work/package"
  echo "${found[0]}"
}

# A home and configuration of its own for every run of the program, so that no saved language
# or setting of the user's changes what it does.
run_program() {
  local home=$work/home-$RANDOM
  mkdir -p "$home"
  HOME=$home XDG_CONFIG_HOME=$home/.config XDG_DATA_HOME=$home/.local/share "$@"
}

build_package() {
  rm -rf "$work"
  mkdir -p "$work/package"
  # CPack stages its install inside the folder given with -B, so the build folder stays as it is.
  cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/package" >"$work/cpack.log" 2>&1 ||
    { cat "$work/cpack.log" >&2; fail "cpack did not build the package"; }
  local package
  package=$(the_package)
  local version
  version=$(sed -n 's/^set(CPACK_PACKAGE_VERSION "\(.*\)")$/\1/p' "$build/CPackConfig.cmake")
  [ "$(basename "$package")" = "vantle-control_${version}_amd64.deb" ] ||
    fail "the package is named $(basename "$package"), not vantle-control_${version}_amd64.deb"
  echo "built $(basename "$package")"
}

field() {
  dpkg-deb -f "$(the_package)" "$1"
}

check_fields() {
  local depends recommends
  depends=$(field Depends)
  recommends=$(field Recommends)
  echo "Depends: $depends"
  echo "Recommends: $recommends"
  [ "$(field Package)" = "vantle-control" ] || fail "Package is $(field Package)"
  [ "$(field Architecture)" = "amd64" ] || fail "Architecture is $(field Architecture)"
  [ "$(field Section)" = "utils" ] || fail "Section is $(field Section)"
  [ "$(field Maintainer)" = "Orlend <support@orlend.example>" ] || fail "Maintainer is $(field Maintainer)"
  [ "$(field Homepage)" = "https://orlend.example/vantle-control" ] || fail "Homepage is $(field Homepage)"
  [ -n "$(field Description | sed -n 2p)" ] || fail "the description has no long part"
  # The libraries found by dpkg-shlibdeps, each with the version this build needs, and the
  # platform plugin and libcurl, which no linked library reveals.
  local package
  for package in libc6 'libstdc\+\+6' libqt6core6 libqt6gui6 libqt6widgets6 libpulse0 'libplist[-0-9.]*[0-9]' 'libicu[0-9]+' \
                 libxcb-randr0 'libcurl[0-9]'; do
    grep -Eq "(^|, )${package} \(>= [^)]+\)(,|$)" <<<"$depends" || fail "Depends lacks a versioned $package"
  done
  # Debian states no least version for the X connection library.
  grep -Eq "(^|, )libxcb1( \(>= [^)]+\))?(,|$)" <<<"$depends" || fail "Depends lacks libxcb1"
  grep -Eq "(^|, )qt6-qpa-plugins(,|$)" <<<"$depends" || fail "Depends lacks qt6-qpa-plugins"
  grep -Eq "(^|, )pulseaudio \| pipewire-pulse(,|$)" <<<"$recommends" || fail "Recommends lacks a sound server"
  grep -Eq "(^|, )xdg-utils(,|$)" <<<"$recommends" || fail "Recommends lacks xdg-utils"
}

check_contents() {
  local listing=$work/contents.txt
  dpkg-deb -c "$(the_package)" | awk '{print $1, $NF}' >"$listing"
  local path
  for path in \
      ./usr/bin/vantle-control \
      ./usr/share/applications/$app_id.desktop \
      ./usr/share/metainfo/$app_id.metainfo.xml \
      ./usr/share/man/man1/vantle-control.1.gz \
      ./usr/share/doc/vantle-control/copyright \
      ./usr/share/icons/hicolor/16x16/apps/$app_id.png \
      ./usr/share/icons/hicolor/32x32/apps/$app_id.png \
      ./usr/share/icons/hicolor/48x48/apps/$app_id.png \
      ./usr/share/icons/hicolor/64x64/apps/$app_id.png \
      ./usr/share/icons/hicolor/128x128/apps/$app_id.png \
      ./usr/share/icons/hicolor/256x256/apps/$app_id.png \
      ./usr/share/icons/hicolor/scalable/apps/$app_id.svg \
      ./usr/share/vantle-control/LICENSE.txt \
      ./usr/share/vantle-control/OrlendLogo.png \
      ./usr/share/vantle-control/tray/vantle-control-22.png \
      ./usr/share/vantle-control/osd/osd-volume.png \
      ./usr/share/vantle-control/SeparatorTemplate/SeparatorTemplate.app/Contents/Info.plist; do
    awk -v path="$path" '$2 == path { found = 1 } END { exit !found }' "$listing" || fail "the package lacks $path"
  done
  local code
  for code in de en es fr it nl pt ru; do
    grep -Fq " ./usr/share/vantle-control/$code.lproj/Localizable.strings" "$listing" ||
      fail "the package lacks the $code string table"
    grep -Fq " ./usr/share/vantle-control/Help/$code.html" "$listing" || fail "the package lacks the $code help page"
  done
  grep -Eq "^-rwxr-xr-x \./usr/bin/vantle-control$" "$listing" || fail "the program is not executable"
  grep -Eq "^-rwxr-xr-x \./usr/share/vantle-control/SeparatorTemplate/SeparatorTemplate.app/Contents/MacOS/Separator$" \
    "$listing" || fail "the separator template's launcher is not executable"
  # Everything lies under /usr, and nothing of the sources or of the build leaks in.
  ! grep -Ev " \./(usr(/.*)?)?$" "$listing" || fail "the package installs outside /usr"
  ! grep -Eq "artwork-src|CMakeLists\.txt|\.in$" "$listing" || fail "the package carries sources"
  echo "$(wc -l <"$listing") entries, all expected ones present"
}

# dpkg installs into a root of its own. Its database starts as a copy of this system's, so that
# the package's dependencies are checked against what is really installed here (the program
# then runs with this system's libraries), while this system's own database is never touched.
install_package() {
  rm -rf "$root"
  mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
  cp /var/lib/dpkg/status "$root/var/lib/dpkg/status"
  : >"$root/var/lib/dpkg/available"
  local dpkg=(dpkg --root="$root" --log=/dev/null --force-bad-path --no-triggers)
  if [ "$(id -u)" -ne 0 ]; then
    # Without root, dpkg cannot give the files their owner; fakeroot lets it believe it did.
    command -v fakeroot >/dev/null || { echo "SKIP: not root and no fakeroot"; exit $skipped; }
    dpkg=(fakeroot "${dpkg[@]}" --force-not-root)
  fi
  "${dpkg[@]}" -i "$(the_package)" >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log" >&2; fail "dpkg -i failed"; }
  [ "$(dpkg-query --root="$root" -W -f='${Status}' vantle-control)" = "install ok installed" ] ||
    fail "dpkg does not list the package as installed"
  [ -x "$program" ] || fail "no program at $program"
  echo "installed into $root"
}

check_localization() {
  local code line
  for code in en de es fr it nl pt ru; do
    line=$(run_program env -u LC_ALL -u LC_MESSAGES LANGUAGE="$code" LANG=C.UTF-8 VANTLE_EXPECT_LANGUAGE="$code" \
           "$program" --verify-localization) || fail "--verify-localization failed for $code"
    echo "$line"
    [[ $line == "PASS language=$code Sparkle=$code keys=154 settings="?* ]] || fail "unexpected line for $code: $line"
  done
}

check_diagnosis() {
  if [ -z "${PULSE_SERVER:-}" ]; then
    # Run alone, without the test command's servers: a private sound server of our own.
    bash "$source/scripts/sound-server.sh" start "$work/sound"
    trap 'bash "$source/scripts/sound-server.sh" stop "$work/sound"' EXIT
    # shellcheck disable=SC1091
    source "$work/sound/env"
    export PULSE_SERVER
  fi
  local output=$work/diagnose.txt
  run_program "$program" --diagnose >"$output" || fail "--diagnose ended with status $?"
  cat "$output"
  grep -Eq '^AUDIO id=[0-9]+ name=.* volumeElements=\[[0-9, ]*\] levels=\[[0-9., ]*\]$' "$output" ||
    fail "--diagnose listed no sound output"
  grep -Eq '^DEFAULT [0-9]+ ' "$output" || fail "--diagnose named no default output"
  ! grep -Ev '^(AUDIO id=|DEFAULT |DISPLAY )' "$output" || fail "--diagnose printed other lines"
  if command -v pactl >/dev/null; then
    local sinks audio
    sinks=$(pactl list short sinks | wc -l)
    audio=$(grep -c '^AUDIO ' "$output")
    [ "$sinks" -eq "$audio" ] || fail "the sound server has $sinks outputs, --diagnose listed $audio"
  fi
}

# A copy of the installed program whose English table is missing must fail its localization
# check while the installed one passes: the program reads the texts installed beside it, not
# those of the build or source tree.
check_resource_location() {
  local copy=$work/relocated
  rm -rf "$copy"
  mkdir -p "$copy/bin" "$copy/share"
  cp -a "$program" "$copy/bin/"
  cp -a "$root/usr/share/vantle-control" "$copy/share/"
  run_program env VANTLE_EXPECT_LANGUAGE=en LANGUAGE=en "$copy/bin/vantle-control" --verify-localization >/dev/null ||
    fail "the relocated copy does not pass while complete"
  rm -r "$copy/share/vantle-control/en.lproj"
  local line status=0
  # The failed check aborts on purpose; no core file is wanted from it.
  line=$(ulimit -c 0; run_program env VANTLE_EXPECT_LANGUAGE=en LANGUAGE=en "$copy/bin/vantle-control" \
         --verify-localization 2>/dev/null) || status=$?
  if [ "$status" -eq 0 ] || [ -n "$line" ]; then
    fail "without its installed English table the program still passed (status $status, '$line')"
  fi
  echo "the copy without its English table stopped with status $status"
}

validate_desktop_entry() {
  command -v desktop-file-validate >/dev/null || { echo "SKIP: desktop-file-validate is not installed"; exit $skipped; }
  local entry=$root/usr/share/applications/$app_id.desktop
  desktop-file-validate "$entry" || fail "desktop-file-validate rejects the entry"
  grep -qx "Exec=vantle-control" "$entry" || fail "the entry does not start vantle-control"
  grep -qx "Icon=$app_id" "$entry" || fail "the entry's icon is not $app_id"
  local code
  for code in de es fr it nl pt ru; do
    grep -q "^GenericName\[$code\]=" "$entry" || fail "the entry has no generic name in $code"
    grep -q "^Comment\[$code\]=" "$entry" || fail "the entry has no comment in $code"
  done
}

validate_metainfo() {
  command -v appstreamcli >/dev/null || { echo "SKIP: appstreamcli is not installed"; exit $skipped; }
  appstreamcli validate --no-net "$root/usr/share/metainfo/$app_id.metainfo.xml" || fail "appstreamcli rejects the metainfo"
  # The installed tree as software centres read it: the metainfo beside the desktop entry it names.
  appstreamcli validate-tree --no-net "$root" || fail "appstreamcli rejects the installed tree"
  local version
  version=$(sed -n 's/^set(CPACK_PACKAGE_VERSION "\(.*\)")$/\1/p' "$build/CPackConfig.cmake")
  grep -q "<release version=\"$version\" date=\"[0-9]\{4\}-[0-9]\{2\}-[0-9]\{2\}\"/>" \
    "$root/usr/share/metainfo/$app_id.metainfo.xml" || fail "the metainfo does not name release $version"
}

check_manual_page() {
  command -v groff >/dev/null || { echo "SKIP: groff is not installed"; exit $skipped; }
  local text=$work/manual.txt warnings=$work/manual-warnings.txt
  # Plain text without overstriking, so that headings and switches can be looked for.
  gzip -dc "$root/usr/share/man/man1/vantle-control.1.gz" | groff -man -Tascii -ww -P-cbu \
    >"$text" 2>"$warnings" || fail "groff cannot format the manual page"
  [ ! -s "$warnings" ] || { cat "$warnings" >&2; fail "groff warns about the manual page"; }
  local section switch
  for section in NAME SYNOPSIS DESCRIPTION OPTIONS "EXIT STATUS" ENVIRONMENT FILES BUGS; do
    grep -q "^$section" "$text" || fail "the manual page has no $section section"
  done
  for switch in verify-localization diagnose verify-controls verify-osd show-settings relaunch-parent \
                suppress-keyboard-invitation preview-localization preview-six-displays; do
    grep -q -- "--$switch" "$text" || fail "the manual page does not describe --$switch"
  done
}

case $step in
  build) build_package ;;
  fields) check_fields ;;
  contents) check_contents ;;
  install) install_package ;;
  localization) check_localization ;;
  diagnose) check_diagnosis ;;
  resources) check_resource_location ;;
  desktop-entry) validate_desktop_entry ;;
  metainfo) validate_metainfo ;;
  manual) check_manual_page ;;
  clean) rm -rf "$work" ;;
  *) echo "unknown step $step" >&2; exit 2 ;;
esac
