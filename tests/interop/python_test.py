"""What the library writes, a program in Python reads, and the other way round, byte for byte.

usage: python_test.py MESSAGES GOLDEN REBUILD...
  MESSAGES  folder of the modules that protoc made of the schema
  GOLDEN    folder of the golden files
  REBUILD   the program interop_rebuild, behind its emulator if it has one
"""

import subprocess
import sys
import unittest
from pathlib import Path

MESSAGES, GOLDEN, REBUILD = sys.argv[1], Path(sys.argv[2]), sys.argv[3:]
sys.path.insert(0, MESSAGES)

import samples  # noqa: E402
from filter_actions_pb2 import ActionPB  # noqa: E402
from filter_entries_pb2 import FiltersEntryPB  # noqa: E402
from filter_groups_pb2 import FiltersGroupPB  # noqa: E402
from filter_matches_pb2 import MatchPB  # noqa: E402
from policer_pb2 import PolicerPB  # noqa: E402

MESSAGE_TYPES = {"matches": MatchPB, "actions": ActionPB, "entries": FiltersEntryPB,
                 "groups": FiltersGroupPB}


def golden_bytes(what):
    """The golden bytes by their names."""
    if (GOLDEN / what).is_dir():
        return {path.stem: bytes.fromhex(path.read_text())
                for path in (GOLDEN / what).glob("*.hex")}
    lines = (GOLDEN / f"{what}.hex").read_text().splitlines()
    return {name: bytes.fromhex(data) for name, data in (line.split(" ", 1) for line in lines)}


def golden_messages(what):
    """Name, bytes and message of each."""
    for name, data in golden_bytes(what).items():
        yield name, data, MESSAGE_TYPES[what].FromString(data)


def built_anew(message):
    """An equal message, made field by field: what Python does not know of is lost."""
    new = type(message)()
    for field, value in message.ListFields():
        if field.label == field.LABEL_REPEATED and field.message_type:
            getattr(new, field.name).extend(built_anew(element) for element in value)
        elif field.label == field.LABEL_REPEATED:
            getattr(new, field.name).extend(list(value))
        elif field.message_type:
            getattr(new, field.name).CopyFrom(built_anew(value))
        else:
            setattr(new, field.name, value)
    return new


def rebuilt(what, form, data):
    """What the library makes of the bytes: bytes, or its dump."""
    return subprocess.run([*REBUILD, what, form], input=data, stdout=subprocess.PIPE,
                          check=True).stdout


class FromTheLibrary(unittest.TestCase):
    def test_every_golden_message_is_read_and_written_again(self):
        for what in MESSAGE_TYPES:
            count = 0
            for name, data, message in golden_messages(what):
                with self.subTest(what=what, name=name):
                    self.assertTrue(message.IsInitialized())
                    self.assertEqual(built_anew(message).SerializeToString(), data)
                count += 1
            self.assertGreater(count, 0, what)

    def test_every_policer_is_read_and_written_again(self):
        entries = [entry for _, _, entry in golden_messages("entries")]
        for _, _, group in golden_messages("groups"):
            entries.extend(group.entries_)
        for entry in entries:
            policer = PolicerPB.FromString(entry.policer_)
            self.assertEqual(built_anew(policer).SerializeToString(), entry.policer_)

    def expect_values(self, what, made):
        golden = golden_bytes(what)
        for name, message in made.items():
            with self.subTest(what=what, name=name):
                self.assertEqual(MESSAGE_TYPES[what].FromString(golden[name]), message)
                self.assertEqual(message.SerializeToString(), golden[name])

    def test_there_is_a_sample_of_each_class(self):
        for what, names in (("matches", [*samples.MATCHES, "MatchDSCP"]),
                            ("actions", samples.ACTIONS)):
            classes = {name.split("_")[0] for name in golden_bytes(what)}
            self.assertEqual(classes, set(names))

    def test_the_values_are_those_that_were_meant(self):
        self.expect_values("matches", {name: samples.match(name) for name in
                                       (*samples.MATCHES, *samples.MORE_MATCHES)})
        self.expect_values("actions", {name: samples.action(name) for name in
                                       (*samples.ACTIONS, *samples.MORE_ACTIONS)})
        self.expect_values("entries", samples.ENTRIES)
        self.expect_values("groups", samples.GROUPS)


class ToTheLibrary(unittest.TestCase):
    def expect_read(self, folder, what, made):
        for name, message in made.items():
            with self.subTest(what=what, name=name):
                data = message.SerializeToString()
                self.assertEqual(rebuilt(what, "bytes", data), data)
                self.assertEqual(rebuilt(what, "text", data),
                                 (GOLDEN / folder / f"{name}.txt").read_bytes())

    def test_entries_and_groups_arrive_as_they_were_written(self):
        self.expect_read("entries", "entry", samples.ENTRIES)
        self.expect_read("groups", "group", samples.GROUPS)

    def test_the_samples_are_in_the_order_of_their_codes(self):
        for kinds in (samples.MATCHES, samples.ACTIONS):
            self.assertEqual([code for code, _ in kinds.values()], list(range(len(kinds))))

    def test_a_group_of_each_type_with_all_that_it_admits(self):
        """Each kind is sent alone first; those that come back go into one full entry."""
        kinds_seen = set()
        for type_ in range(10):
            sent = samples.group(
                1, 2, 0, type_,
                [samples.entry(code, matches=[samples.match(name)])
                 for name, (code, _) in samples.MATCHES.items()])
            admitted = FiltersGroupPB.FromString(
                rebuilt("group", "bytes", sent.SerializeToString()))
            for entry in admitted.entries_:
                self.assertEqual(entry, sent.entries_[entry.id_])
            kinds = [match for entry in admitted.entries_ for match in entry.matches_]
            kinds_seen.update(match.type_ for match in kinds)
            full = samples.group(1, 2, 0, type_, [samples.entry(9, 8, kinds)])
            data = full.SerializeToString()
            self.assertEqual(rebuilt("group", "bytes", data), data, type_)
        # No type admits a source of IPv6 or an untagged packet.
        self.assertEqual(kinds_seen, set(range(len(samples.MATCHES))) - {14, 16})

    def test_elements_in_any_order_are_put_in_order(self):
        ordered = samples.ENTRIES["every_match_but_ipv6"]
        shuffled = FiltersEntryPB.FromString(ordered.SerializeToString())
        shuffled.matches_.sort(key=lambda match: -match.type_)
        self.assertNotEqual(shuffled, ordered)
        self.assertEqual(rebuilt("entry", "bytes", shuffled.SerializeToString()),
                         ordered.SerializeToString())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
