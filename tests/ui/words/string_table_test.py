"""Every text of the string table is in Unicode's normal form C: string_table_test.py STRING_TABLE.CPP"""
import json, re, sys, unicodedata

texts = re.findall(r'/\* (\w\w) \*/ ("(?:[^"\\]|\\.)*"),', open(sys.argv[1], encoding="utf-8").read())
assert len(texts) == 275 * 14, f"{len(texts)} texts"
wrong = [f"{code} {text}" for code, text in texts if not unicodedata.is_normalized("NFC", json.loads(text))]
assert not wrong, "not in normal form C:\n" + "\n".join(wrong)
