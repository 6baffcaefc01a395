# Sourced by ./run and ./test: what they need from Debian, and how the program is built.

RunPackages="g++ cmake ninja-build libsystemd-dev iproute2 util-linux"
TestPackages="libgtest-dev libgmock-dev libbenchmark-dev python3 chrony ntpsec-ntpdig
  nginx-light rdate netcat-openbsd inetutils-inetd clang clang-format clang-tidy
  libclang-rt-14-dev mandoc systemd tzdata qt6-base-dev xvfb xdotool openbox trayer imagemagick
  x11-utils xauth fonts-dejavu-core fonts-liberation"

# Install PACKAGE...: those that are missing, with apt where we are root. Those that bring
# daemons along are test peers; they run in namespaces of the tests' own and nowhere else.
Install() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then return; fi
  if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages. Please install them first:" >&2
    echo "  sudo apt-get install ${missing[*]}" >&2
    exit 1
  fi
  echo "Installing: ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# Build PRESET [TARGET...]: configures and builds, saying so.
Build() {
  local preset=$1
  shift
  echo "Building ($preset)..."
  cmake --preset "$preset" "${ConfigureOptions[@]}" >"build/$preset.configure.log" 2>&1 || {
    cat "build/$preset.configure.log" >&2
    exit 1
  }
  cmake --build --preset "$preset" ${1:+--target "$@"} >"build/$preset.build.log" 2>&1 || {
    grep -vE '^\[[0-9]+/[0-9]+\] ' "build/$preset.build.log" >&2
    exit 1
  }
}

ConfigureOptions=()
