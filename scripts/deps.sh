#!/bin/sh
# Installs what the build and the tests need when it is missing (Debian).
# Usage: scripts/deps.sh [extra packages...]
set -eu
# qemu-user: the test suite also runs on emulated SSE2-only processors.
need="cmake g++ make googletest libgtest-dev gcc-multilib g++-multilib qemu-user $*"
missing=""
for p in $need; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "installing:$missing"
if [ "$(id -u)" = 0 ]; then SUDO=""; else SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq $missing
