"""The words of the set-up programs, as each of them reads them."""
import os
import re
import subprocess
import unittest

MAKE_SETUP_WORDS = os.environ["MAKE_SETUP_WORDS"]
LANGUAGES = 14


def make_setup_words(*arguments):
    return subprocess.run([MAKE_SETUP_WORDS, *arguments], capture_output=True, timeout=60)


def words(form):
    result = make_setup_words(form)
    assert result.returncode == 0, result.stderr
    return result.stdout.decode()


class SetupWords(unittest.TestCase):
    def test_nsis_reads_each_word_in_each_language(self):
        lines = words("nsis").splitlines()
        found = [re.fullmatch(r'LangString (\w+) \$\{LANG_(\w+)\} "(([^$"%]|\$\\"|\$WordArgument)+)"', line)
                 for line in lines if line.startswith("LangString")]
        self.assertNotIn(None, found)
        languages = [line.split()[-1] for line in lines if line.startswith("!insertmacro SETUP_LANGUAGE")]
        self.assertEqual((len(languages), languages[0], languages[-1]), (LANGUAGES, "English", "Hindi"))
        names = [match[1] for match in found[:len(found) // LANGUAGES]]
        self.assertEqual(len(names), len(set(names)))
        self.assertEqual([(match[1], match[2]) for match in found], [(n, l) for l in languages for n in names])

        texts = {(match[1], match[2]): match[3] for match in found}
        self.assertEqual(texts["BACK", "English"], "Back")
        self.assertEqual(texts["BACK", "German"], "Zurück")
        self.assertEqual(texts["SPACE_NEEDED", "French"], "Espace requis\u00a0: environ $WordArgument\u00a0Mo")
        self.assertEqual(texts["DISK_FULL", "Japanese"][:15], "$WordArgumentをコ")
        self.assertIn('$\\"التالي$\\"', texts["START_HINT", "Arabic"])

    def test_another_form_is_refused(self):
        for arguments in ([], ["rtf"], ["nsis", "more"]):
            refused = make_setup_words(*arguments)
            self.assertEqual((refused.returncode, refused.stdout), (2, b""))
            self.assertIn(b"forms: nsis", refused.stderr)


if __name__ == "__main__":
    unittest.main()
