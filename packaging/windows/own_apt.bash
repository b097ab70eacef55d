# own_apt FOLDER TYPE: lays out in FOLDER a state of apt's own, which knows what the machine's own knows
# of Debian, as entries of TYPE: "deb" or "deb-src". The machine's list stays as it is. ${own[@]} are the
# options that work on that state.
own_apt() {
  local keys=/usr/share/keyrings/debian-archive-keyring.gpg
  local targets=(apt-get indextargets --format "$2 [signed-by=$keys] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)"
    "Identifier: Packages" "Origin: Debian")
  mkdir -p "$1/lists/partial" "$1/archives/partial"
  "${targets[@]}" | sort -u >"$1/sources.list"
  # It knows whose they are from their lists.
  [ -s "$1/sources.list" ] || { apt-get -qq update && "${targets[@]}" | sort -u >"$1/sources.list"; }
  [ -s "$1/sources.list" ] || echo "apt knows no packages of Debian here" >&2
  own=(-o "Dir::Etc::sourcelist=$1/sources.list" -o Dir::Etc::sourceparts=/dev/null
    -o "Dir::State::lists=$1/lists" -o "Dir::Cache=$1" -o APT::Sandbox::User=root)
}
