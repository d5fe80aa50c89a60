"""The phonebook: imported while the server runs, and used by the next call."""

import json

from harness import ProgramTest

CARDS = "".join("BEGIN:VCARD\r\nVERSION:%s\r\nN:Name %d;Ada;;;\r\nTEL;TYPE=work:030 2310%04d\r\nEND:VCARD\r\n" %
                ("3.0" if index % 2 else "4.0", index, index) for index in range(5000))


class ContactsTest(ProgramTest):
    def unchanged(self, path):
        return json.loads(self.run_program("contacts", "import", path, "--json", "--data", self.data)[1])["unchanged"]

    def test_a_name_learnt_later_shows_on_the_next_call_in_every_spelling(self):
        simulator, server = self.simulate_and_serve("call c from 03023102500 ; ring c ; giveup c\n", "missed call from 03023102500")
        self.assertEqual([item["firstName"] for item in self.list("missed")["items"]], [""])
        book = self.file("book.vcf", CARDS + "BEGIN:VCARD\r\nVERSION:4.0\r\nTEL:1\r\nEND:VCARD\r\n")
        status, output, errors = self.run_program("contacts", "import", book, "--data", self.data)
        self.assertEqual((status, output), (0, "5001 contacts read from %s: 5000 added, 0 changed, 0 known already, 1 skipped\n" % book))
        self.assertIn("%s:25001: skipped: it has no name\n" % book, errors)
        self.assertEqual(self.unchanged(book), 5000)

        self.assertEqual(simulator.stop(), 0)
        self.simulate("call c from 03023102500 ; ring c ; giveup c\n"
                      "call d from +493023102500 ; ring d ; giveup d\n", listen=simulator.address)
        server.logs(r"missed call from Ada Name 2500 \(\+49")
        self.assertEqual({item["firstName"] + " " + item["surname"] for item in self.list("missed")["items"]}, {"Ada Name 2500"})

    def test_what_is_exported_can_be_imported_and_a_file_without_contacts_is_refused(self):
        self.serve("127.0.0.1:1")
        book = self.file("book.csv", "surname;firstName;mobile;group\nMüller;Ann;0155 50100123;a, b\nZuse;;1;\n")
        self.done("contacts", "import", book)
        for name in ("csv", "vcf"):
            self.assertEqual(self.unchanged(self.file("copy." + name, self.done("contacts", "export", "--format", name))), 2)
        found = json.loads(self.done("contacts", "list", "--search", "müller", "--json"))
        self.assertEqual((found["total"], found["contacts"][0]["group"]), (1, "a, b"))
        self.assertEqual(self.done("contacts", "list", "--limit", "1"), "  NAME        MOBILE\n  Ann Müller  0155 50100123\n(1 of 2)\n")
        for name, text, reason in (("a.csv", "a,b\n1,2\n", "its first row has no known column name"), ("b.vcf", "", "the file is empty"),
                                   ("c.vcf", "hello\n", "c.vcf:1: skipped: what stands here belongs to no card"),
                                   ("d.csv", "surname;office\nLong;%s\n" % ("0" * 60000), "d.csv:2: skipped: its office is longer than 256 bytes")):
            self.assertIn(reason, self.refused("contacts", "import", self.file(name, text), silent=False))
        self.assertIn("No such file", self.refused("contacts", "import", self.data + "/none.vcf"))
        self.assertIn("neither .vcf nor .csv", self.refused("contacts", "import", "book.doc", status=2))
