# `cpack -G DEB` in a build folder makes vantle-control_<version>_amd64.deb from what
# cmake/install.cmake installs, for Debian 12 and the distributions built on it.
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "vantle-control")
set(CPACK_PACKAGE_VENDOR "Orlend")
set(CPACK_PACKAGE_CONTACT "Orlend <support@orlend.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://orlend.example/vantle-control")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "volume, mute and display brightness from the tray and the media keys")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/resources/LICENSE.txt")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
# The package carries the program without its debugging sections.
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME "DEB-DEFAULT")
set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Orlend <support@orlend.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${CPACK_PACKAGE_HOMEPAGE_URL}")
# The long description under the summary, line by line; a lone full stop is an empty line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "Vantle Control puts the volume of the current sound output and the
brightness of every attached display in one place: an icon in the system
tray of an X11 session opens quick controls, and a settings window holds
the rest. It takes over the keyboard's volume, mute and brightness keys
and shows the new level on screen.
.
Volume and mute act on the sound server's default output, a combined
output through all its member devices. Brightness is set through the
kernel's backlight for built-in panels and over DDC/CI for external
monitors, with software dimming for displays without a brightness
control; linked displays move together.
.
The program follows the desktop's light or dark appearance, runs in eight
languages, can start at login and looks for new versions.")

# The libraries the program links come from dpkg-shlibdeps (package dpkg-dev). The xcb platform
# plugin is loaded by the toolkit at run time, and libcurl by the first update check, so no
# linked library shows the need for them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libcurl4 (>= 7.85.0)")
# A sound server speaking the PulseAudio protocol is what gives the program outputs to control;
# xdg-utils opens the web pages and settings programs the windows link to; libddcutil is opened
# only when an external monitor needs it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pulseaudio | pipewire-pulse, xdg-utils, libddcutil4")
# The desktop's colour scheme is read from the settings portal when one runs.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xdg-desktop-portal")

# A source archive (`cpack --config CPackSourceConfig.cmake`) holds the tracked tree only.
set(CPACK_SOURCE_GENERATOR "TGZ")
set(CPACK_SOURCE_IGNORE_FILES "/\\.git/" "/build/")

include(CPack)
