"""list and show."""
from harness import FINDINGS, USAGE, CliTest

ANNEX = [
    ["workstation", "configuration", "description"],
    ["ANNEX-01", "7", 'Custom map, "Annex" CT'],
    ["ANNEX-02", "11", "(does not exist)"],
    ["ANNEX-03", "", ""],
]


class ListTest(CliTest):
    def test_lists_configurations_with_how_many_workstations_use_them(self):
        rows = self.succeed("list", "--json").json()["configurations"]
        self.assertEqual([row["configID"] for row in rows], [1, 2, 3, 4, 5, 6, 7, 8, 9, 12])
        self.assertEqual(
            rows[7],
            {
                "configID": 8,
                "Description": "Kårdiologi Łódź",
                "PACSType": "McKesson - XML",
                "workstations": 1,
                "LastUpdateDate": "2024-10-01 15:00:09",
                "LastUpdateUserID": "4",
            },
        )

    def test_aligns_text_in_columns(self):
        lines = self.succeed("list", "--name", "*ö*").out + self.succeed("list").out
        self.assertIn("8       Kårdiologi Łódź             McKesson - XML           1 ", lines)

    def test_writes_csv_with_quotes_and_line_ends_of_its_standard(self):
        outcome = self.succeed("list", "workstations", "--name", "annex*", "--csv")
        self.assertEqual(outcome.csv(), ANNEX)
        self.assertIn('"Custom map, ""Annex"" CT"\r\n', outcome.out)

    def test_begins_csv_with_a_byte_order_mark_on_request(self):
        self.assertTrue(self.succeed("list", "--csv", "--bom").out.startswith("\ufeffconfigID,"))

    def test_says_that_nothing_is_listed(self):
        self.assertEqual(self.succeed("list", "--name", "x").out, "Nothing is listed.\n")
        self.assertEqual(self.succeed("list", "--name", "x", "--json").json()["configurations"], [])

    def test_filters_by_the_configuration_of_a_workstation(self):
        def names(*filter):
            rows = self.succeed("list", "workstations", "--json", *filter).json()["workstations"]
            return [row["workstation"] for row in rows]

        self.assertEqual(names("--configuration", "8"), names("--configuration", "kårdiologi łódź"))
        self.assertIn("ANNEX-03", names("--configuration", "none"))
        self.assertNotIn("ANNEX-02", names("--configuration", "none"))

    def test_filters_by_fields_in_codes_words_and_patterns(self):
        def numbers(*conditions):
            filter = [word for condition in conditions for word in ("--where", condition)]
            rows = self.succeed("list", "--json", *filter).json()["configurations"]
            return [row["configID"] for row in rows]

        self.assertEqual(numbers("PACSType=1"), [1, 12])
        self.assertEqual(numbers("pacstype=standard - xml"), [1, 12])
        self.assertEqual(numbers("Vendor Format=COM - Broker Extended"), [4])
        self.assertEqual(numbers("RequestFileName=c:\\*", "BiDirectional=yes"), [7, 12])

    def test_refuses_a_filter_of_the_other_kind(self):
        def says(text, *arguments):
            self.fail_with(USAGE, "list", *arguments, says=text)

        says("--where is for configurations", "workstations", "--where", "PACSType=COM - Broker")
        says("--configuration is for 'list workstations'.", "--configuration", "none")

    def test_suggests_the_right_field_value_and_configuration(self):
        def says(text, *arguments):
            self.fail_with(USAGE, "list", *arguments, says=text)

        says("There is no field 'PACTyp'. Did you mean 'PACSType'?", "--where", "PACTyp=1")
        says("Did you mean 'COM - Broker'?", "--where", "PACSType=COM - Borker")
        says("is not a condition. Write FIELD=VALUE.", "--where", "PACSType")
        says(
            "There is no configuration 'Broker (odl)'. Did you mean 'Broker (old)'?",
            *("workstations", "--configuration", "Broker (odl)"),
        )

    def test_lists_what_can_be_read_and_says_what_cannot(self):
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        self.change("UPDATE System_workstation_cfg SET key_value = 'x' WHERE pc_name = 'READ-01'")
        outcome = self.fail_with(
            FINDINGS, "list", "--csv", says="configuration 2 cannot be read: Type mismatch"
        )
        self.assertEqual([row[0] for row in outcome.csv()][1:3], ["1", "3"])
        outcome = self.run_program("list", "workstations", "--name", "READ-01", "--csv")
        self.assertEqual(outcome.csv()[1], ["READ-01", "x", "(not a number)"])


class ShowTest(CliTest):
    def test_prints_the_summary_of_the_component(self):
        lines = self.succeed("show", "6").out.split("\n")
        self.assertEqual(lines[0], " PACS ID - Description:         6 - O'Neil Clinic")
        self.assertEqual(lines[3], " PACS Type:                     McKesson (HMI RC) - XML")

    def test_shows_accession_fields_that_are_stored_as_names(self):
        self.assertIn(
            " Multiple Accession Fields:     11 - Accession ID, 27 - Account\n",
            self.succeed("show", "5").out,
        )

    def test_finds_by_number_description_and_workstation(self):
        for name in ("6", "o'neil clinic"):
            self.assertIn(" 6 - O'Neil Clinic\n", self.succeed("show", name).out)
        self.assertIn('7 - Custom map, "Annex" CT\n', self.succeed("show", "annex-01").out)

    def test_separates_several_by_an_empty_line(self):
        both = self.succeed("show", "6", "annex-01").out
        self.assertEqual(both, self.succeed("show", "6").out + "\n" + self.succeed("show", "7").out)

    def test_gives_every_column_to_programs(self):
        document = self.succeed("show", "2", "5", "--json").json()
        self.assertEqual(document["schema"], "tlpacscfg/records/1")
        first, second = document["records"]
        self.assertEqual(len(first), 38)
        self.assertEqual(first["ResponseFileName"], "\\\\nas01\\ris\\ct\\response.xml")
        self.assertEqual((first["CheckFileDateTime"], second["Port"]), (-1, 10000))

    def test_refuses_what_is_not_there(self):
        self.fail_with(USAGE, "show", "99", says="no configuration and no workstation '99'")
        self.fail_with(USAGE, "show", "40000", says="no configuration and no workstation '40000'")
        self.fail_with(
            USAGE,
            *("show", "annex-02"),
            says="'annex-02' has the configuration 11, which does not exist.",
        )
        self.fail_with(USAGE, "show", "annex-03", says="'annex-03' has no configuration.")
        self.change("UPDATE System_workstation_cfg SET key_value = 'x' WHERE pc_name = 'READ-01'")
        self.fail_with(
            USAGE, "show", "READ-01", says="'READ-01' has 'x', which is not a number of a"
        )
        self.change("UPDATE Interface_PACS_cfg SET description = 'Same' WHERE config_id IN (3, 4)")
        self.fail_with(USAGE, "show", "same", says="for example 3 and 4. Use the number.")

    def test_says_what_cannot_be_read(self):
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        self.change("UPDATE System_workstation_cfg SET key_value = '2' WHERE pc_name = 'READ-01'")
        for name in ("2", "02", "READ-01"):
            self.fail_with(FINDINGS, "show", name, says=": Configuration 2 cannot be read: Type")
        outcome = self.fail_with(USAGE, "show", "CT", says="configuration 2 cannot be read: Type")
        self.assertIn("There is no configuration and no workstation 'CT'.", outcome.errors)
