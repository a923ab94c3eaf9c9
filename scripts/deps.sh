# SPDX-License-Identifier: MIT
# Sourced by the README commands: installs the Debian packages the build, the tests
# and the demo need, with Qt 5 and with Qt 6, but only when one of them is missing,
# so a second run does not touch the network.
KELTAB_PACKAGES=(
    cmake g++ make pkg-config zlib1g-dev
    qtbase5-dev qtbase5-dev-tools libqt5sql5-sqlite
    qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite
    qttools5-dev qttools5-dev-tools qt6-tools-dev qt6-l10n-tools
    clang libclang-rt-14-dev
    xvfb xauth fonts-dejavu-core
    x11-xkb-utils xkb-data libx11-dev libxtst-dev
    weston qtwayland5 qt6-wayland
    libqt5svg5 qt5-image-formats-plugins libqt6svg6 qt6-image-formats-plugins openssl
    dbus-daemon dbus-bin at-spi2-core python3 python3-gi gir1.2-atspi-2.0
    doxygen
)

keltab_install_deps() {
    local missing=()
    local pkg
    for pkg in "${KELTAB_PACKAGES[@]}"; do
        if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$pkg")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    "${sudo[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
}
