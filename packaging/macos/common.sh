# Sourced by the scripts beside it. They run with the bash that a Mac has, 3.2.
# shellcheck shell=bash

say() { printf '==> %s\n' "$*"; }

# refuse SENTENCE: before anything has been done.
refuse() {
    printf '%s\n' "$*" >&2
    exit 2
}

# What every binary in the bundle has.
# shellcheck disable=SC2034
architectures="arm64 x86_64"

# code_inside APP: everything in it that is signed by itself, the innermost first.
code_inside() {
    find "$1/Contents" -type f -name '*.dylib'
    find "$1/Contents/Frameworks" -depth -type d -name '*.framework' 2>/dev/null || true
    # Helpers beside the program itself.
    find "$1/Contents/MacOS" -type f ! -name Quorvane
}

# sign_code APP IDENTITY OPTIONS: what is inside it. Never codesign --deep, which gives all of it the program's rights.
sign_code() {
    local app=$1 identity=$2 options=$3 code
    code_inside "$app" | while IFS= read -r code; do
        # shellcheck disable=SC2086 # options are several words, or none
        codesign --force $options --sign "$identity" "$code"
    done
}

# make_image APP IMAGE: a disk image with the application and a way into the Applications folder.
make_image() {
    local app=$1 image=$2 stage
    stage=$(mktemp -d)
    ditto "$app" "$stage/Quorvane.app"
    ln -s /Applications "$stage/Applications"
    rm -f "$image"
    hdiutil create -quiet -volname Quorvane -fs HFS+ -format UDZO -srcfolder "$stage" "$image"
    rm -rf "$stage"
}
