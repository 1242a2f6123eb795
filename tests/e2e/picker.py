"""Before a folder is open, and the ways to open one."""

import scenario
from scenario import BUTTON, Scenario


class Picker(Scenario):
    def test_invites_to_choose_a_folder(self):
        mosa = self.mosa()
        mosa.see(name="Mosa")
        mosa.see(BUTTON, "Choose Folder…")
        mosa.see(name="Open a folder of videos and photos.")
        mosa.see(name="You can also drop a folder here.")
        self.assertEqual(mosa.all(BUTTON, "Open Last"), [], "no folder was ever opened")


if __name__ == "__main__":
    scenario.main()
