"""What the hosted Macs are told names what there is."""

import json
import os
import pathlib
import re
import unittest

import yaml

PROJECT = pathlib.Path(__file__).resolve().parents[2]


class WorkflowTest(unittest.TestCase):
    def setUp(self):
        self.jobs = yaml.safe_load((PROJECT / ".github/workflows/mac.yml").read_text())["jobs"]

    def commands(self):
        return [step.get("run", "") for job in self.jobs.values() for step in job["steps"]]

    def test_runs_on_every_kind_of_mac_that_is_hosted(self):
        runners = self.jobs["build-and-test"]["strategy"]["matrix"]["runner"]
        self.assertEqual(runners, ["macos-15", "macos-26", "macos-15-intel", "xcode-27"])

    def test_uses_the_work_of_others_by_commit(self):
        uses = [step["uses"] for job in self.jobs.values() for step in job["steps"] if "uses" in step]
        self.assertGreater(len(uses), 2)
        for use in uses:
            self.assertRegex(use, r"^actions/[\w-]+@[0-9a-f]{40}$")

    def test_the_scripts_and_presets_that_it_names_are_there(self):
        presets = json.loads((PROJECT / "CMakePresets.json").read_text())
        known = {preset["name"] for preset in presets["configurePresets"] + presets["buildPresets"]}
        for command in self.commands():
            for script in re.findall(r"(?:^|\s)((?:packaging/macos|\.ci)/[\w-]+|\./test|\./run)(?=\s|$)", command):
                self.assertTrue(os.access(PROJECT / script, os.X_OK), script)
            for preset in re.findall(r"--preset (\S+)", command):
                self.assertIn(preset, known)


if __name__ == "__main__":
    unittest.main()
