# Sourced by ./run and ./test: what they need from Debian, and how the program is built.

RunPackages="g++ cmake ninja-build libsystemd-dev iproute2 util-linux"
TestPackages="libgtest-dev libgmock-dev libbenchmark-dev python3 chrony ntpsec-ntpdig
  nginx-light rdate netcat-openbsd inetutils-inetd clang clang-format clang-tidy
  libclang-rt-14-dev mandoc systemd tzdata qt6-base-dev xvfb xdotool openbox trayer imagemagick
  x11-utils xauth fonts-dejavu-core fonts-liberation
  desktop-file-utils appstream"

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

# Build PRESET [TARGET...]: configures and builds, and shows how far it is.
Build() {
  local preset=$1
  shift
  printf 'Building (%s)...' "$preset"
  if [ ! -t 1 ]; then echo; fi
  cmake --preset "$preset" "${ConfigureOptions[@]}" >"build/$preset.configure.log" 2>&1 || {
    cat "build/$preset.configure.log" >&2
    exit 1
  }
  cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 | tee "build/$preset.build.log" |
    ShowProgress "Building ($preset)..." || {
    grep -vE '^\[[0-9]+/[0-9]+\] ' "build/$preset.build.log" >&2
    exit 1
  }
}

# ShowProgress WHAT: the count of each build step of the input, on one line of a terminal; in a
# log a line every ten seconds.
ShowProgress() {
  local what=$1 line shown=$SECONDS
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]] || continue
    if [ -t 1 ]; then
      printf '\r%s %d of %d' "$what" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
    elif [ $((SECONDS - shown)) -ge 10 ]; then
      printf '%s %d of %d\n' "$what" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
      shown=$SECONDS
    fi
  done
  if [ -t 1 ]; then echo; fi
}

ConfigureOptions=()
