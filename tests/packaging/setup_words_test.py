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

    def speak(self, language, *names):
        """What a shell has in its variables in that language."""
        script = words("sh") + 'speak "$1"; shift\nfor name; do eval "printf \'%s\\n\' \\"\\$WORD_$name\\""; done'
        return subprocess.run(["/bin/sh", "-euc", script, "sh", language, *names], capture_output=True, timeout=60,
                              check=True).stdout.decode().splitlines()

    def test_sh_speaks_each_language_by_number_and_by_name(self):
        names = ["BACK", "FAILED", "DISK_FULL", "CLOSE_GAME"]
        codes = ["en", "pl", "pt", "es", "de", "fr", "it", "ru", "uk", "tr", "zh", "ja", "ar", "hi"]
        spoken = [self.speak(str(number), *names) for number in range(LANGUAGES)]
        self.assertEqual(len({tuple(texts) for texts in spoken}), LANGUAGES)
        for code, texts in zip(codes, spoken):
            for name in (code, code + "_XX.UTF-8", code + ".utf8", code + "@euro", code + "-XX"):
                self.assertEqual(self.speak(name, *names), texts, name)
        for unknown in ("", "C", "C.UTF-8", "POSIX", "14", "44", "-1", "dex_DE", "nl_NL.UTF-8"):
            self.assertEqual(self.speak(unknown, *names), spoken[0], unknown)

        self.assertEqual(self.speak("de_DE.UTF-8", "BACK", "SPACE_NEEDED"), ["Zurück", "Benötigter Platz: etwa %.1f\u00a0MB"])

    def test_another_form_is_refused(self):
        for arguments in ([], ["rtf"], ["nsis", "more"]):
            refused = make_setup_words(*arguments)
            self.assertEqual((refused.returncode, refused.stdout), (2, b""))
            self.assertIn(b"forms: nsis", refused.stderr)


if __name__ == "__main__":
    unittest.main()
