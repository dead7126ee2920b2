#!/usr/bin/env bash
# Fetches the catalogue packages that the data tree is built from and unpacks the files the
# converters read. Packages come from the Debian archive (apt-get download) and from the npm
# registry (npm pack); both are kept in the download cache, so a second run only unpacks.
#
#   fetch_sources.sh <cache-dir> <stamp-file>
#
# <cache-dir>/debs and <cache-dir>/npm hold the downloads, <cache-dir>/root the unpacked
# files (usr/share/... and package/...). The stamp file is written last, on success.
set -euo pipefail

cache=${1:?usage: fetch_sources.sh <cache-dir> <stamp-file>}
stamp=${2:?usage: fetch_sources.sh <cache-dir> <stamp-file>}

say() { printf '[data] %s\n' "$*" >&2; }
fail() { say "error: $*"; exit 1; }

# package, version, files to unpack
debs=(
  "stellarium-data|0.22.2-1|./usr/share/stellarium/stars/default/stars_0_0v0_8.cat ./usr/share/stellarium/stars/default/stars_1_0v0_8.cat ./usr/share/stellarium/stars/default/stars_2_0v0_8.cat ./usr/share/stellarium/stars/default/stars_hip_sp_0v0_4.cat ./usr/share/stellarium/stars/default/cross-id.dat ./usr/share/stellarium/stars/default/hip_plx_err.dat ./usr/share/stellarium/stars/default/hip_pm.dat ./usr/share/stellarium/stars/default/name.fab ./usr/share/stellarium/skycultures/western/star_names.fab ./usr/share/stellarium/skycultures/western/constellationship.fab ./usr/share/stellarium/skycultures/western/constellation_names.eng.fab ./usr/share/stellarium/data/constellation_boundaries.dat ./usr/share/stellarium/textures/milkyway.png ./usr/share/stellarium/textures/sun.png ./usr/share/doc/stellarium-data/copyright"
  "stellarium|0.22.2-1|./usr/bin/stellarium ./usr/share/doc/stellarium/copyright"
  "casacore-data-jpl-de405|2007.07.05+ds.1-1|./usr/share/casacore/data/ephemerides/DE405 ./usr/share/doc/casacore-data-jpl-de405/copyright"
  "xplanet-images|1.3.1-3|./usr/share/xplanet/images/earth.jpg ./usr/share/xplanet/images/night.jpg ./usr/share/doc/xplanet-images/copyright"
  "openuniverse-common|1.0beta3.1+dfsg-7.1|./usr/share/openuniverse/textures/clouds.jpg ./usr/share/doc/openuniverse-common/copyright"
  "astronomical-almanac|5.6-7|./usr/share/aa/star.cat ./usr/share/doc/astronomical-almanac/copyright"
  "fonts-dejavu-core|2.37-6|./usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf ./usr/share/doc/fonts-dejavu-core/copyright"
)
npm_package="d3-celestial@0.7.35"
npm_files="package/data/stars.14.json package/data/starnames.json package/LICENSE"

mkdir -p "$cache/debs" "$cache/npm" "$cache/root"
cache=$(cd "$cache" && pwd)

for tool in apt-get dpkg-deb tar; do
    command -v "$tool" >/dev/null 2>&1 || fail "$tool is needed to fetch the catalogue packages"
done

sudo_cmd=""
[ "$(id -u)" -eq 0 ] || sudo_cmd=sudo
updated=0

# Downloads one package into the cache: the pinned version first, the archive's current one
# when the pinned version is gone; "apt-get update" once when the package lists are stale.
download_deb() {
    local name=$1 version=$2
    local have
    have=$(ls "$cache/debs/${name}_"*.deb 2>/dev/null | head -n 1 || true)
    if [ -n "$have" ]; then
        echo "$have"
        return 0
    fi
    say "downloading $name"
    local attempt
    for attempt in 1 2; do
        if (cd "$cache/debs" && apt-get download -q "$name=$version" >/dev/null 2>&1) ||
           (cd "$cache/debs" && apt-get download -q "$name" >/dev/null 2>&1); then
            break
        fi
        if [ "$attempt" -eq 1 ] && [ "$updated" -eq 0 ]; then
            say "updating the package lists"
            $sudo_cmd apt-get update -qq >/dev/null || fail "apt-get update failed"
            updated=1
        else
            fail "cannot download $name (is the Debian archive reachable?)"
        fi
    done
    have=$(ls "$cache/debs/${name}_"*.deb 2>/dev/null | head -n 1 || true)
    [ -n "$have" ] || fail "no package file for $name after the download"
    case "$have" in
        *"_${version/*:/}_"*) ;;
        *) say "warning: $name: pinned version $version not available, using $(basename "$have")" ;;
    esac
    echo "$have"
}

# A package file that does not unpack (an interrupted download) is fetched once more.
unpack_deb() {
    local deb=$1 files=$2
    # shellcheck disable=SC2086
    dpkg-deb --fsys-tarfile "$deb" 2>/dev/null | tar -x -C "$cache/root" $files 2>/dev/null
}

for entry in "${debs[@]}"; do
    IFS='|' read -r name version files <<<"$entry"
    deb=$(download_deb "$name" "$version")
    if ! unpack_deb "$deb" "$files"; then
        say "$(basename "$deb") does not unpack; fetching it again"
        rm -f "$deb"
        deb=$(download_deb "$name" "$version")
        unpack_deb "$deb" "$files" || fail "cannot unpack $files from $(basename "$deb")"
    fi
done

tgz=$(ls "$cache/npm/"*.tgz 2>/dev/null | head -n 1 || true)
if [ -z "$tgz" ]; then
    command -v npm >/dev/null 2>&1 ||
        fail "the npm client is needed to fetch $npm_package (Debian package npm)"
    say "downloading $npm_package"
    (cd "$cache/npm" && npm pack --silent "$npm_package" >/dev/null 2>&1) ||
        fail "cannot download $npm_package from the npm registry"
    tgz=$(ls "$cache/npm/"*.tgz 2>/dev/null | head -n 1 || true)
    [ -n "$tgz" ] || fail "no package file for $npm_package after the download"
fi
# shellcheck disable=SC2086
if ! tar -xzf "$tgz" -C "$cache/root" $npm_files 2>/dev/null; then
    rm -f "$tgz"
    fail "cannot unpack $(basename "$tgz") (removed; run the build again to fetch it anew)"
fi

touch "$stamp"
say "sources ready in $cache/root"
