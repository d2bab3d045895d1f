"""What an administrator does with it, from the list of workstations to the undo."""
from change_test import ChangeTest
from harness import CONFLICT, DIFFERENCES


class JourneyTest(ChangeTest):
    def test_moves_twenty_workstations_and_takes_it_back(self):
        before = self.assignments()
        listed = self.succeed("list", "workstations", "--json").json()["workstations"]
        moving = [row["workstation"] for row in listed if row["configuration"] not in (None, 8)]
        moving = moving[:20]
        self.assertEqual(len(moving), 20)
        lines = "".join(f"{name},Kårdiologi Łódź\n" for name in moving)
        file = self.write("moves.csv", f"workstation,configuration\n{lines}")
        plan = self.directory / "moves.plan"
        shown = self.change_site("assign", "--csv", file, "--plan", plan, code=DIFFERENCES).out
        for name in moving:
            self.assertRegex(shown, rf"workstation  {name} .* 8 Kårdiologi Łódź\n")
        self.assertEqual(self.assignments(), before)

        one = moving[3]
        change = (
            "UPDATE System_workstation_cfg SET key_value = ? "
            "WHERE key_name = 'PACSConfig' AND pc_name = ?"
        )
        self.change(change, "12", one)
        outcome = self.change_site("apply", plan, code=CONFLICT)
        self.assertIn(f"Workstation {one} had the configuration", outcome.errors)
        self.assertIn("and has 12 Übergang – Zürich.", outcome.errors)
        self.assertEqual(self.assignments(), before | {one: "12"})

        self.change(change, before[one], one)
        self.change_site("apply", plan)
        self.assertEqual(self.assignments(), before | dict.fromkeys(moving, "8"))
        self.change_site("undo")
        self.assertEqual(self.assignments(), before)
        history = self.change_site("history", "--json").json()["history"]
        self.assertEqual([row["state"] for row in history], ["undone", "stored"])
