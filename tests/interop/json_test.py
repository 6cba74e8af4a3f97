"""What "filterctl json" prints is JSON, and a program in Python rebuilds the group from it.

usage: json_test.py MESSAGES GOLDEN FILTERCTL...
  MESSAGES   folder of the modules that protoc made of the schema
  GOLDEN     folder of the golden files
  FILTERCTL  the program, behind its emulator if it has one
"""

import json
import subprocess
import sys
import unittest
from pathlib import Path

MESSAGES, GOLDEN, FILTERCTL = sys.argv[1], Path(sys.argv[2]), sys.argv[3:]
sys.path.insert(0, MESSAGES)

from filter_groups_pb2 import FiltersGroupPB  # noqa: E402
from google.protobuf.json_format import ParseDict  # noqa: E402


def printed(data, *options):
    return subprocess.run([*FILTERCTL, "json", "--allow-empty", *options], input=data,
                          stdout=subprocess.PIPE, check=True).stdout


class Json(unittest.TestCase):
    def test_every_golden_group(self):
        paths = sorted((GOLDEN / "groups").glob("*.hex"))
        self.assertGreater(len(paths), 0)
        for path in paths:
            with self.subTest(name=path.stem):
                data = bytes.fromhex(path.read_text())
                document = json.loads(printed(data))
                self.assertEqual(list(document), ["group", "readable"])
                self.assertEqual(json.loads(printed(data, "--compact")), document)
                message = ParseDict(document["group"], FiltersGroupPB())
                self.assertEqual(message.SerializeToString(), data)
                self.expect_readable(document["readable"], message)

    def expect_readable(self, readable, message):
        entries = readable["entries"]
        self.assertEqual([entry["id"] for entry in entries],
                         [entry.id_ for entry in message.entries_])
        for entry, sent in zip(entries, message.entries_):
            for name, elements in (("matches", sent.matches_), ("actions", sent.actions_)):
                self.assertEqual(len(entry[name]), len(elements))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
