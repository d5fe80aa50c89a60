"""The phonebook: imported while the server runs, and known to the next call."""

import json
import os

from harness import ProgramTest

NUMBER = "030 2310%04d"


class ContactsTest(ProgramTest):
    def contacts(self, *arguments, status=0):
        ended, output, errors = self.run_program("contacts", *arguments, "--data", self.data)
        self.assertEqual(ended, status, errors)
        return output, errors

    def file(self, name, text):
        path = os.path.join(self.data, name)
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        return path

    def cards(self, count):
        return "".join("BEGIN:VCARD\r\nVERSION:%s\r\nN:Name %d;Ada;;;\r\nTEL;TYPE=work:%s\r\nEND:VCARD\r\n" %
                       ("3.0" if index % 2 else "4.0", index, NUMBER % index) for index in range(count))

    def test_a_name_learnt_later_shows_on_the_next_call_in_every_spelling(self):
        simulator, address = self.simulate("call c from 03023102500 ; ring c ; giveup c\n")
        self.serve(address)
        simulator.prints("scenario is over")
        self.assertEqual([(item["firstName"], item["number"]) for item in self.list("missed")["items"]],
                         [("", "03023102500")])
        book = self.file("book.vcf", self.cards(5000) + "BEGIN:VCARD\r\nVERSION:4.0\r\nTEL:1\r\nEND:VCARD\r\n")
        output, errors = self.contacts("import", book)
        self.assertEqual(output, "5001 contacts read from %s: 5000 added, 0 changed, 0 known already, 1 skipped\n" % book)
        self.assertIn("%s:25001: skipped: it has no name\n" % book, errors)
        self.assertEqual(json.loads(self.contacts("import", book, "--json")[0])["unchanged"], 5000)

        self.assertEqual(simulator.stop(), 0)
        simulator, _ = self.simulate("call c from 03023102500 ; ring c ; giveup c\n"
                                     "call d from +493023102500 ; ring d ; giveup d\n", listen=address)
        simulator.prints("scenario is over")
        named = {(item["firstName"], item["surname"], item["number"]) for item in self.list("missed")["items"]}
        self.assertEqual(named, {("Ada", "Name 2500", "03023102500"), ("Ada", "Name 2500", "+493023102500")})

    def test_what_is_exported_can_be_imported_and_changes_nothing(self):
        self.serve("127.0.0.1:1")
        self.contacts("import", self.file("book.csv", "surname;firstName;mobile;group\nMüller;Ann;0155 50100123;a, b\nZuse;;1;\n"))
        for name in ("csv", "vcf"):
            copy = self.file("copy." + name, self.contacts("export", "--format", name)[0])
            self.assertEqual(json.loads(self.contacts("import", copy, "--json")[0])["unchanged"], 2)
        found = json.loads(self.contacts("list", "--search", "müller", "--json")[0])
        self.assertEqual((found["total"], found["contacts"][0]["group"]), (1, "a, b"))
        self.assertEqual(self.contacts("list", "--limit", "1")[0],
                         "  NAME        MOBILE\n  Ann Müller  0155 50100123\n(1 of 2)\n")

    def test_a_file_that_holds_no_contacts_is_status_1_and_named(self):
        self.serve("127.0.0.1:1")
        for name, text, reason in (("a.csv", "a,b\n1,2\n", "its first row names no column"), ("b.vcf", "", "there is nothing in it"),
                                   ("c.vcf", "hello\n", "c.vcf:1: skipped: what stands here belongs to no card")):
            self.assertIn(reason, self.contacts("import", self.file(name, text), status=1)[1])
        self.assertIn("No such file", self.contacts("import", self.data + "/none.vcf", status=1)[1])
        self.assertIn("neither .vcf nor .csv", self.contacts("import", "book.doc", status=2)[1])
