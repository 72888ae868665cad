"""The Mac's packaging, as far as it can be seen without a Mac: property lists, icon, scripts, and the layout of a bundle.

ctest gives what was built: PACKAGING_INFO (Info.plist as a build fills it in) and PACKAGING_ICON (the program that draws the icon)."""

import os
import pathlib
import plistlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PACKAGING = PROJECT / "packaging/macos"
INFO = pathlib.Path(os.environ["PACKAGING_INFO"])
DRAW_ICON = os.environ["PACKAGING_ICON"]
SCRIPTS = ["build-universal", "check-bundle", "common.sh", "release", "sign-local"]
# They run on a Mac before there is any other bash.
MAC_SCRIPTS = [PACKAGING / name for name in SCRIPTS] + [PROJECT / name for name in ("run", "test", "cmake/setup.sh", ".ci/lint", ".ci/run")]
TEAM = "7KX2MR04TD"
BASH_4 = re.compile(
    r"\b(mapfile|readarray|coproc)\b|\b(declare|local|typeset) -[a-zA-Z]*[An]\b|\$\{\w+(\^|,,?|@)|&>>|\|&|;;&|;&\s|\bwait -n\b|\$'[^']*\\u|EPOCHSECONDS|-v \w+ \]"
)


def loaded(path):
    return plistlib.loads(path.read_bytes())


class InfoTest(unittest.TestCase):
    def test_has_exactly_the_keys_that_the_program_needs(self):
        info = loaded(INFO)
        version = re.search(r"project\(Quorvane VERSION (\S+)", (PROJECT / "CMakeLists.txt").read_text()).group(1)
        texts = {key: info.pop(key) for key in ("NSAppleEventsUsageDescription", "NSDownloadsFolderUsageDescription", "NSHumanReadableCopyright")}
        self.assertEqual(
            info,
            {
                "CFBundleAllowMixedLocalizations": True,
                "CFBundleDevelopmentRegion": "en",
                "CFBundleDisplayName": "Quorvane",
                "CFBundleExecutable": "Quorvane",
                "CFBundleIconFile": "Quorvane",
                "CFBundleIdentifier": "com.quorvane.app",
                "CFBundleInfoDictionaryVersion": "6.0",
                "CFBundleName": "Quorvane",
                "CFBundlePackageType": "APPL",
                "CFBundleShortVersionString": version,
                "CFBundleVersion": version,
                "LSApplicationCategoryType": "public.app-category.utilities",
                "LSMinimumSystemVersion": "14.0",
                "LSMultipleInstancesProhibited": True,
                "NSHighResolutionCapable": True,
                "NSPrincipalClass": "NSApplication",
                "NSSupportsAutomaticGraphicsSwitching": True,
                "NSSupportsAutomaticTermination": False,
                "NSSupportsSuddenTermination": False,
            },
        )
        self.assertIn("System Events", texts["NSAppleEventsUsageDescription"])
        self.assertIn("Trash", texts["NSAppleEventsUsageDescription"])
        self.assertIn("Downloads", texts["NSDownloadsFolderUsageDescription"])
        for text in texts.values():
            self.assertNotIn("${", text)


class EntitlementsTest(unittest.TestCase):
    def test_local_asks_for_nothing_that_needs_a_profile(self):
        self.assertEqual(loaded(PACKAGING / "local.entitlements"), {"com.apple.security.automation.apple-events": True})

    def test_release_adds_what_the_profile_grants(self):
        application = f"{TEAM}.com.quorvane.app"
        self.assertEqual(
            loaded(PACKAGING / "release.entitlements"),
            {
                "com.apple.application-identifier": application,
                "com.apple.developer.icloud-container-identifiers": [application],
                "com.apple.developer.icloud-services": ["CloudDocuments"],
                "com.apple.developer.team-identifier": TEAM,
                "com.apple.developer.ubiquity-container-identifiers": [application],
                "com.apple.security.automation.apple-events": True,
                "keychain-access-groups": [application],
            },
        )

    def test_macos_own_parser_can_read_them(self):
        # It refuses what plutil takes: comments, a byte order mark, other line ends, the binary form.
        files = sorted(PACKAGING.glob("*.entitlements"))
        self.assertEqual(len(files), 2)
        for file in files:
            content = file.read_bytes()
            self.assertTrue(content.startswith(b'<?xml version="1.0" encoding="UTF-8"?>\n'), file)
            self.assertTrue(content.endswith(b"</plist>\n"), file)
            self.assertNotIn(b"\r", content)
            self.assertNotIn(b"<!--", content)
            self.assertTrue(content.isascii(), file)


class IconTest(unittest.TestCase):
    SIDES = {
        b"icp4": 16, b"icp5": 32, b"ic07": 128, b"ic08": 256, b"ic09": 512,
        b"ic11": 32, b"ic12": 64, b"ic13": 256, b"ic14": 512, b"ic10": 1024,
    }  # fmt: skip

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.iconset = self.folder / "Quorvane.iconset"
        subprocess.run([DRAW_ICON, self.iconset], check=True)

    def test_has_a_picture_of_each_size(self):
        icon = self.folder / "Quorvane.icns"
        subprocess.run([PACKAGING / "make-icns", self.iconset, icon], check=True)
        content = icon.read_bytes()
        kind, length = struct.unpack(">4sI", content[:8])
        self.assertEqual((kind, length), (b"icns", len(content)))
        sides = {}
        place = 8
        while place < len(content):
            kind, length = struct.unpack(">4sI", content[place : place + 8])
            picture = content[place + 8 : place + length]
            self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n", kind)
            width, height, depth, color = struct.unpack(">IIBB", picture[16:26])
            self.assertEqual((width, depth, color), (height, 8, 6), kind)
            sides[kind] = width
            place += length
        self.assertEqual(place, len(content))
        self.assertEqual(sides, self.SIDES)

    def test_refuses_a_set_that_lacks_a_size(self):
        (self.iconset / "icon_128x128@2x.png").unlink()
        made = subprocess.run([PACKAGING / "make-icns", self.iconset, self.folder / "Quorvane.icns"], capture_output=True)
        self.assertNotEqual(made.returncode, 0)
        self.assertFalse((self.folder / "Quorvane.icns").exists())

    def test_says_where_it_cannot_draw(self):
        (self.folder / "file").touch()
        drawn = subprocess.run([DRAW_ICON, self.folder / "file/icons"], capture_output=True, text=True)
        self.assertEqual(drawn.returncode, 1)
        self.assertIn("can't be written to", drawn.stderr)


class ScriptsTest(unittest.TestCase):
    def test_shellcheck_finds_nothing(self):
        found = subprocess.run(
            ["shellcheck", "-x", "-S", "warning", "-s", "bash", *(str(PACKAGING / name) for name in SCRIPTS)],
            cwd=PROJECT, capture_output=True, text=True,
        )  # fmt: skip
        self.assertEqual((found.returncode, found.stdout), (0, ""))

    def test_use_nothing_that_the_bash_of_a_mac_lacks(self):
        found = []
        for script in MAC_SCRIPTS:
            for number, line in enumerate(script.read_text().splitlines(), 1):
                if BASH_4.search(line.split("# ")[0]):
                    found.append(f"{script.relative_to(PROJECT)}:{number}: {line}")
        self.assertEqual(found, [])

    def test_what_that_bash_lacks_would_be_found(self):
        lines = ["mapfile -t a < <(b)", "declare -A a", "local -n a=b", 'echo "${a^^}"', 'echo "${a,,}"', "a |& b", "a &>> b", "wait -n"]
        self.assertEqual([line for line in lines if not BASH_4.search(line)], [])


class Workspace(unittest.TestCase):
    """A folder with a bundle in it, and one with all tools that a script finds: the common ones, and what stands in for a Mac's."""

    COMMON = ("awk", "basename", "bash", "cat", "cp", "date", "dirname", "file", "find", "grep", "ln", "mktemp", "mv", "readlink", "rm", "sed", "touch")

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.tools = self.folder / "tools"
        self.tools.mkdir()
        for name in self.COMMON:
            (self.tools / name).symlink_to(shutil.which(name))
        (self.tools / "python3").symlink_to(sys.executable)
        self.app = self.folder / "Quorvane.app"
        contents = self.app / "Contents"
        for place in ("MacOS", "Frameworks/QtCore.framework/Versions/A", "Resources/Licenses"):
            (contents / place).mkdir(parents=True)
        (contents / "MacOS/Quorvane").touch(mode=0o755)
        (contents / "MacOS/quorvane-script").touch(mode=0o755)
        (contents / "Frameworks/QtCore.framework/Versions/Current").symlink_to("A")
        (contents / "Resources/Quorvane.icns").touch()
        for license in (PACKAGING / "licenses").glob("*.txt"):
            shutil.copy(license, contents / "Resources/Licenses")
        shutil.copy(INFO, contents / "Info.plist")

    def tool(self, name, body):
        file = self.tools / name
        file.unlink(missing_ok=True)
        file.write_text("#!/bin/bash\n" + body + "\n")
        file.chmod(0o755)

    def run_script(self, name, *arguments, **variables):
        environment = {"PATH": str(self.tools), "HOME": str(self.folder), **variables}
        return subprocess.run([PACKAGING / name, *arguments], env=environment, capture_output=True, text=True)


class BundleTest(Workspace):
    def check(self):
        checked = self.run_script("check-bundle", str(self.app))
        return checked.returncode, [line.removeprefix(f"{self.app}: ") for line in checked.stdout.splitlines() if not line.startswith("==>")]

    def test_a_good_one_passes(self):
        self.assertEqual(self.check(), (0, []))

    def test_misses_what_is_missing(self):
        for place in ("MacOS/Quorvane", "MacOS/quorvane-script", "Resources/Quorvane.icns", "Resources/Licenses/LGPL-3.txt"):
            file = self.app / "Contents" / place
            file.rename(self.folder / "aside")
            self.assertEqual(self.check(), (1, [f"lacks Contents/{place}"]))
            (self.folder / "aside").rename(file)

    def test_finds_what_lies_beside_contents(self):
        (self.app / "notes.txt").touch()
        (self.app / ".hidden").touch()
        status, faults = self.check()
        self.assertEqual((status, len(faults)), (1, 2))

    def test_finds_a_link_that_leads_out(self):
        (self.app / "Contents/Frameworks/QtGui.framework").symlink_to("/opt/qt/QtGui.framework")
        self.assertEqual(self.check(), (1, ["a link to an absolute place: Contents/Frameworks/QtGui.framework"]))

    def test_finds_another_programs_information(self):
        info = loaded(INFO)
        info.update(CFBundleIdentifier="com.example.other", LSMinimumSystemVersion="26.0")
        (self.app / "Contents/Info.plist").write_bytes(plistlib.dumps(info))
        self.assertEqual(self.check(), (1, ["has the identifier 'com.example.other'", "says it runs on macOS '26.0'"]))

    def binaries_are(self, libraries, rpath="@executable_path/../Frameworks", least="14.0", architectures="arm64 x86_64"):
        self.tool("file", 'case "$2" in */MacOS/Quorvane) echo "Mach-O universal binary" ;; *) echo data ;; esac')
        self.tool("lipo", f'case " {architectures} " in *" $3 "*) ;; *) exit 1 ;; esac')
        listed = "\n".join(f"\t{library} (compatibility version 6.0.0, current version 6.8.3)" for library in libraries)
        self.tool("otool", f"""if [ "$1" = -L ]; then printf '%s\\n' "$2:" '{listed}'; else
printf '%s\\n' '          cmd LC_BUILD_VERSION' '    minos {least}' '      sdk 15.0' '          cmd LC_RPATH' '         path {rpath} (offset 12)'; fi""")

    def test_takes_binaries_that_run_on_any_mac(self):
        self.binaries_are(["@rpath/QtCore.framework/Versions/A/QtCore", "/usr/lib/libc++.1.dylib", "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit"])
        self.assertEqual(self.check(), (0, []))

    def test_finds_a_library_of_the_builders_machine(self):
        self.binaries_are(["/opt/homebrew/opt/qtbase/lib/QtCore.framework/Versions/A/QtCore"])
        self.assertEqual(
            self.check(),
            (1, ["Contents/MacOS/Quorvane wants /opt/homebrew/opt/qtbase/lib/QtCore.framework/Versions/A/QtCore, which other Macs don't have"]),
        )

    def test_finds_where_it_would_not_start(self):
        self.binaries_are([], rpath="/opt/qt/lib", least="14.4", architectures="arm64")
        self.assertEqual(
            self.check(),
            (
                1,
                [
                    "Contents/MacOS/Quorvane lacks x86_64",
                    "Contents/MacOS/Quorvane looks for libraries in /opt/qt/lib",
                    "Contents/MacOS/Quorvane needs macOS 14.4",
                ],
            ),
        )


class ReleaseTest(Workspace):
    """On a machine that has all that a release needs, each thing is taken away in turn."""

    IDENTITY = f"Developer ID Application: The founders ({TEAM})"

    def setUp(self):
        super().setUp()
        self.profile = self.folder / "Quorvane.provisionprofile"
        self.profile.touch()
        self.image = self.folder / "Quorvane.dmg"
        self.tool("uname", "echo Darwin")
        for name in ("codesign", "ditto", "hdiutil", "spctl"):
            self.tool(name, f'echo "{name} $*" >>{self.folder}/done')
        self.tool("security", f"""case $1 in find-identity) echo '  1) 0123 "{self.IDENTITY}"' ;; esac""")
        self.profile_says(f"{TEAM}.com.quorvane.app", "2099-01-01T00:00:00Z")
        self.tool("xcrun", 'case "$*" in --find*) ;; "notarytool history"*) ;; *) echo "xcrun $*" >>' + f"{self.folder}/done ;; esac")

    def profile_says(self, application, expires):
        self.tool("plutil", f"""case $2 in Entitlements.*) echo {application} ;; ExpirationDate) echo {expires} ;; id) echo 7 ;; status) echo Accepted ;; esac""")

    def release(self, **changes):
        variables = {"QUORVANE_SIGN_IDENTITY": self.IDENTITY, "QUORVANE_NOTARY_PROFILE": "quorvane", **changes}
        return self.run_script("release", str(self.app), str(self.profile), str(self.image), **variables)

    def assert_refused(self, sentence, **changes):
        released = self.release(**changes)
        self.assertIn(sentence, released.stderr)
        self.assertEqual(released.returncode, 2)
        self.assertFalse((self.folder / "done").exists(), "something was done")
        self.assertFalse((self.app / "Contents/embedded.provisionprofile").exists())

    def test_elsewhere_than_on_a_mac(self):
        self.tool("uname", "echo Linux")
        self.assert_refused("Only a Mac can sign for macOS.")

    def test_without_a_tool(self):
        (self.tools / "hdiutil").unlink()
        self.assert_refused("There is no hdiutil: xcode-select --install")

    def test_without_the_notarys_tool(self):
        self.tool("xcrun", '[ "$2" != stapler ]')
        self.assert_refused("There is no stapler: it comes with Xcode 13 or later.")

    def test_without_an_application(self):
        shutil.rmtree(self.app / "Contents/MacOS")
        self.assert_refused("Quorvane.app is no application. Build it first")

    def test_with_an_application_that_is_laid_out_otherwise(self):
        (self.app / "Contents/Resources/Quorvane.icns").unlink()
        self.assert_refused("isn't laid out as it must be")

    def test_without_an_identity(self):
        self.assert_refused("Say who signs: QUORVANE_SIGN_IDENTITY", QUORVANE_SIGN_IDENTITY="")

    def test_with_an_identity_of_another_team(self):
        self.assert_refused("isn't a Developer ID Application of the team", QUORVANE_SIGN_IDENTITY="Developer ID Application: Others (ABCDE12345)")
        self.assert_refused("isn't a Developer ID Application of the team", QUORVANE_SIGN_IDENTITY=f"Apple Development: One ({TEAM})")

    def test_without_the_key(self):
        self.tool("security", "echo '     0 valid identities found'")
        self.assert_refused("No keychain here has the certificate and the key")

    def test_without_a_profile(self):
        self.profile.unlink()
        self.assert_refused("There is no provisioning profile at")

    def test_with_another_programs_profile(self):
        self.profile_says(f"{TEAM}.com.example.other", "2099-01-01T00:00:00Z")
        self.assert_refused(f"isn't for {TEAM}.com.quorvane.app")

    def test_with_a_profile_that_has_expired(self):
        self.profile_says(f"{TEAM}.com.quorvane.app", "2020-01-01T00:00:00Z")
        self.assert_refused("has expired")

    def test_without_an_account_at_the_notary(self):
        self.assert_refused("Say by whose account it is notarized", QUORVANE_NOTARY_PROFILE="")

    def test_with_an_account_that_the_notary_does_not_take(self):
        self.tool("xcrun", '[ "$1" = --find ]')
        self.assert_refused("Apple's notary doesn't take the profile quorvane")

    def test_with_an_image_that_is_there(self):
        self.image.write_text("the last release")
        self.assert_refused("is there already; nothing is written over")
        self.assertEqual(self.image.read_text(), "the last release")

    def test_with_everything_it_signs_from_the_inside_out_and_notarizes_both(self):
        self.tool("ditto", f'echo "ditto $*" >>{self.folder}/done')
        self.tool("hdiutil", f'echo "hdiutil $*" >>{self.folder}/done; for image; do :; done; touch "$image"')
        (self.app / "Contents/PlugIns/styles").mkdir(parents=True)
        (self.app / "Contents/PlugIns/styles/libqmacstyle.dylib").touch()
        released = self.release()
        self.assertEqual(released.returncode, 0, released.stderr)
        self.assertTrue(self.image.exists())
        self.assertTrue((self.app / "Contents/embedded.provisionprofile").exists())
        steps = (self.folder / "done").read_text()
        order = ["libqmacstyle.dylib", "QtCore.framework", "release.entitlements", "--verify --deep", "submit", "stapler staple", "hdiutil create", "submit", "spctl"]
        place = 0
        for step in order:
            place = steps.find(step, place)
            self.assertGreaterEqual(place, 0, f"{step} isn't next in\n{steps}")
            place += len(step)
        self.assertNotIn("--force --deep", steps)

    def test_what_the_notary_refuses_is_no_release(self):
        self.tool("plutil", f"case $2 in Entitlements.*) echo {TEAM}.com.quorvane.app ;; ExpirationDate) echo 2099-01-01T00:00:00Z ;; id) echo 7 ;; status) echo Invalid ;; esac")
        released = self.release()
        self.assertIn("Apple's notary has refused", released.stderr)
        self.assertNotEqual(released.returncode, 0)
        self.assertIn("xcrun notarytool log 7", (self.folder / "done").read_text())
        self.assertFalse(self.image.exists())


class UniversalTest(Workspace):
    def setUp(self):
        super().setUp()
        self.qt = self.folder / "qt"
        (self.qt / "bin").mkdir(parents=True)
        (self.qt / "bin/macdeployqt").touch(mode=0o755)
        self.tool("uname", "echo Darwin")
        self.tool("lipo", "exit 0")
        for name in ("cmake", "ninja"):
            self.tool(name, "exit 9")

    def assert_refused(self, sentence, *arguments):
        built = self.run_script("build-universal", *arguments)
        self.assertIn(sentence, built.stderr)
        self.assertEqual(built.returncode, 2)

    def test_elsewhere_than_on_a_mac(self):
        self.tool("uname", "echo Linux")
        self.assert_refused("The bundle is built on a Mac", "--qt", str(self.qt))

    def test_without_qt(self):
        self.assert_refused("Say where Qt's universal binaries are")
        self.assert_refused("--qt needs a folder.", "--qt")
        self.assert_refused("isn't the folder of a Qt for macOS", "--qt", str(self.folder))

    def test_with_homebrews_qt(self):
        self.tool("lipo", '[ "$3" = arm64 ]')
        self.assert_refused("isn't universal: it lacks x86_64", "--qt", str(self.qt))

    def test_with_a_word_that_it_does_not_know(self):
        self.assert_refused("unknown: --fast", "--fast")

    def test_a_build_that_fails_is_told(self):
        self.assertEqual(self.run_script("build-universal", "--qt", str(self.qt)).returncode, 9)


if __name__ == "__main__":
    unittest.main()
