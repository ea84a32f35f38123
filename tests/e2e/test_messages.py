"""The wording of the libraries' messages and error texts: no text is written down here a second time; what is tested holds for
every text in every language."""

import itertools
import re
import subprocess

import pytest

import catalogues
from catalogues import LANGUAGES, OTHERS

TEXTS = {language: catalogues.read_texts(language) for language in LANGUAGES}
ENGLISH = TEXTS["english"]
NAMES = catalogues.read_names()
ERROR_ROWS = catalogues.read_error_texts()
ERROR_TEXTS = dict(zip(LANGUAGES, zip(*ERROR_ROWS)))
# All that is said in a language.
SAID = {language: [*TEXTS[language].values(), *ERROR_TEXTS[language]] for language in LANGUAGES}
# Words that have no capital in a label, and one that has it everywhere.
OF_EITHER_KIND = {"with", "from", "since", "Ethernet"}
# Messages whose names tell their place and not what they say.
NAMED_BY_PLACE = {
    "RestrictedStateNotice2", "RestrictedStateNotice3", "AdapterListTitle", "FunctionSecondText", "FunctionKey",
    "UsageIntroduction1", "UsageIntroduction2", "UsageIntroduction3", "PersonalityRefused", "IPv4Section",
    "IPv6Section", "IscsiPingStarted", "IscsiPingLoss", "StatisticsNote", "PortalListColumns", "LoggedIn", "LoggedOut",
    "ImportFailures", "WideRowLabel", "PrioritySetting", "FcoeBootSecondSwitch", "AskFcoeBootSecondSwitch",
    "FcoeBootStateRefused", "BootTargetNumberRefused", "PartitionMenuRefused", "PartitionLimitRefused",
    "PartitionPersonalityRefused", "ConfirmationRefused", "AskConfirmation", "OutsideBounds",
}
NUMBERED_NAME = re.compile(r"(Text|Counters?|Setting|Section|Number)(\d|[ABC])")


def assert_none(faults):
    assert not faults, "\n" + "\n".join(faults)


def at(language, number, fault):
    return f"{language} {number} {TEXTS[language][number]!r}: {fault}"


@pytest.mark.parametrize("language", LANGUAGES)
def test_every_message_of_the_program_is_read(language):
    """The other tests see what is found in the sources; so all of it must be found."""
    assert list(TEXTS[language]) == sorted(NAMES)


@pytest.mark.parametrize("language", LANGUAGES)
def test_characters_blanks_and_punctuation(language):
    assert_none([at(language, number, fault) for number, text in TEXTS[language].items()
                 for fault in catalogues.form_faults(text, language)])


@pytest.mark.parametrize("language", OTHERS)
def test_a_translation_has_the_terms_keys_numbers_and_punctuation_of_the_english_text(language):
    assert_none([at(language, number, fault) for number, text in TEXTS[language].items()
                 for fault in catalogues.pair_faults(ENGLISH[number], text, language)])


@pytest.mark.parametrize("path", catalogues.ERROR_TEXT_TABLES, ids=lambda path: path.parent.parent.name)
def test_every_error_text_is_read(path):
    assert path.read_text(encoding="utf-8").count('L"') == 3 * len(
        catalogues.ERROR_ROW.findall(path.read_text(encoding="utf-8"))) > 0


def test_every_error_text_is_used():
    """That none is missing is the compiler's to see."""
    assert [row[0] for row in ERROR_ROWS if row[0] not in catalogues.read_literals()] == []


@pytest.mark.parametrize("language", LANGUAGES)
def test_characters_blanks_and_punctuation_of_error_texts(language):
    assert_none([f"{language} {text!r}: {fault}" for text in ERROR_TEXTS[language]
                 for fault in catalogues.form_faults(text, language)])


@pytest.mark.parametrize("language", OTHERS)
def test_translated_error_texts_have_the_terms_keys_numbers_and_punctuation_of_the_english_ones(language):
    assert_none([f"{language} {text!r}: {fault}" for english, text in zip(ERROR_TEXTS["english"], ERROR_TEXTS[language])
                 for fault in catalogues.pair_faults(english, text, language)])


@pytest.mark.parametrize("language", OTHERS)
def test_equal_texts_have_equal_translations(language):
    """A message and an error text too, whatever their capitals are."""
    translations = {}
    for english, text in zip(SAID["english"], SAID[language]):
        translations.setdefault(english.lower(), set()).add(text)
    assert [texts for texts in translations.values() if len(texts) > 1] == []
    assert len(translations) < len(SAID["english"])


@pytest.mark.parametrize("language", OTHERS)
def test_different_error_texts_are_translated_differently(language):
    """And one that several libraries say is translated once."""
    translations = dict(zip(ERROR_TEXTS["english"], ERROR_TEXTS[language]))
    assert_none([f"{english!r} is {text!r}, and {translations[english]!r}"
                 for english, text in zip(ERROR_TEXTS["english"], ERROR_TEXTS[language]) if translations[english] != text])
    assert len(set(translations.values())) == len(translations)


def test_english_error_texts_are_sentences():
    assert_none([f"{text!r} is no sentence" for text in ERROR_TEXTS["english"]
                 if not re.match("[A-Z]", text) or not text.endswith(".") or english_kind(text) not in ("sentence", "either")])


@pytest.mark.parametrize("language", OTHERS)
def test_exchanged_error_texts_are_noticed(language):
    """The tests above would notice it, in nearly every case, if two neighbours of one language changed places."""
    unnoticed = [one for (one_english, one), (other_english, other) in itertools.pairwise(
                     zip(ERROR_TEXTS["english"], ERROR_TEXTS[language]))
                 if not list(catalogues.pair_faults(one_english, other, language))
                 and not list(catalogues.pair_faults(other_english, one, language))]
    assert len(unnoticed) <= len(ERROR_ROWS) // 20, unnoticed


@pytest.mark.parametrize("language", OTHERS)
def test_what_is_the_same_in_english_is_the_same_in_a_translation_and_the_other_way_round(language):
    """Apart from capitals, the plural, and a genitive: "Target CHAP name", "CHAP name of the target"."""

    def plain(english):
        words = re.findall(r"\w+", english.lower().replace("priorities", "priority"))
        return sorted(word.removesuffix("s") for word in words if word not in ("of", "the"))

    faults = []
    for one, other in itertools.combinations(NAMES, 2):
        is_same = TEXTS[language][one] == TEXTS[language][other]
        if (is_same and plain(ENGLISH[one]) != plain(ENGLISH[other])) or (
                not is_same and ENGLISH[one].lower() == ENGLISH[other].lower()):
            faults.append(at(language, one, f"{ENGLISH[one]!r} beside {ENGLISH[other]!r}, {other}"))
    assert_none(faults)


def test_english_words_stand_in_a_dictionary():
    """Debian's, or the list of our own."""
    known = catalogues.COMMON_TERMS | catalogues.ENGLISH_WORDS
    words = {word for text in SAID["english"] for word in catalogues.latin_words(text)}
    checked = {part for word in words - known - {word.lower() for word in known}
               for part in word.split("-") if part.lower() not in {each.lower() for each in known}}
    assert len(checked) > 400, "the words are not found in the texts"
    result = subprocess.run(["hunspell", "-d", "en_US", "-l"], input="\n".join(sorted(checked)), capture_output=True,
                            text=True, check=True)
    assert result.stdout.split() == []


def test_every_word_of_our_own_list_is_used():
    used = {word.lower() for text in SAID["english"] for word in catalogues.latin_words(text)}
    assert sorted(word for word in catalogues.COMMON_TERMS | catalogues.ENGLISH_WORDS if word.lower() not in used) == []


@pytest.mark.parametrize("language", LANGUAGES)
def test_every_line_of_the_glossary_is_used(language):
    column = LANGUAGES.index(language)
    used = {word for text in SAID[language] for word, _ in catalogues.GLOSSARY.find(text, column)}
    terms = catalogues.GLOSSARY.terms[column]
    assert sorted(set(terms) - used) == []


def test_a_term_has_one_translation():
    """Apart from negation, which grammar words differently."""
    assert [row[0] for row in catalogues.GLOSSARY.rows if any(len(column) > 1 for column in row[1:])] == [
        ["not", "cannot", "no", "without", "lacks"]]


def test_words_that_are_written_alike_are_one():
    """No two words of the glossary differ by a long vowel alone, or by a small one."""

    def plain(word):
        return word.replace("ー", "").translate(str.maketrans("ァィゥェォャュョ", "アイウエオヤユヨ"))

    assert len({plain(word) for word in catalogues.KATAKANA}) == len(catalogues.KATAKANA) > 100


@pytest.mark.parametrize("column", [1, 2], ids=OTHERS)
@pytest.mark.parametrize("form", catalogues.FORMS, ids=lambda form: form[0].pattern)
def test_every_form_is_used(form, column):
    texts = [SAID[LANGUAGES[column]][place] for place, text in enumerate(SAID["english"]) if form[0].search(text)]
    assert len(texts) > 1
    assert [text for text in texts if not form[column].search(text)] == []


# Texts that no catalogue may hold: another term, another way to write it, another form, another width.
OTHER_WAYS = {
    "chinese": [
        ("Flow Control", "流控"), ("Flow Control", "流控制"), ("Option ROM Version", "选件 ROM 版本"),
        ("The target was removed.", "已删除目标。"), ("The target was removed.", "目标已移除。"),
        ("DHCP (IPv4)", "DHCP (IPv4)"), ("Enable DCB? (y/n)", "是否启用 DCB？(y/n)"),
        ("Enable DCB? (y/n)", "启用 DCB？（y/n）"), ("Enable DCB? (y/n)", "启用 DCB 吗？（y/n）"),
        ("Packets Sent", "发送的数据包"), ("There is no target.", "目标不存在。"),
    ],
    "japanese": [
        ("Driver Version", "ドライバーバージョン"), ("Driver Version", "ドライバー バージョン"),
        ("Driver Version", "ドライバー・バージョン"), ("Driver Version", "ドライバのバージョン"),
        ("Network Interface", "ネットワークインターフェース"), ("Hardware Revision", "ハードウェアリビジョン"),
        ("FCoE Statistics", "FCoE 統計"), ("FCoE Statistics", "FCoE の統計情報"),
        ("Default iSCSI Parameters", "デフォルトの iSCSI パラメーター"), ("Default Gateway", "既定のゲートウェイ"),
        ("Enable DCB? (y/n)", "DCB を有効にしますか (y/n)"), ("Enable DCB? (y/n)", "DCB を有効にしますか？ (y/n)"),
        ("Enable DCB? (y/n)", "DCB を有効にする? (y/n)"), ("Boot State", "ブートの状態"),
        ("The target was removed.", "ターゲットが削除されました。"),
    ],
}


@pytest.mark.parametrize("language, english, text", [(language, *pair) for language in OTHERS
                                                     for pair in OTHER_WAYS[language]])
def test_another_way_to_say_it_is_noticed(language, english, text):
    assert {english.lower(), english.lower() + "s"} & {said.lower() for said in SAID["english"]}
    assert [*catalogues.form_faults(text, language), *catalogues.pair_faults(english, text, language)]


def words_of_name(name):
    return {stem(word) for word in re.findall(r"[A-Z]+(?![a-z])|[A-Z][a-z0-9]*", name)}


def stem(word):
    word = re.sub("(ies|y)$", "i", word.lower())
    return word[:5] if len(word) > 4 else word.rstrip("s")


def test_a_text_has_a_word_of_its_name():
    """So that texts exchanged or moved in all languages alike are found."""
    named = {name for name in NAMES.values() if not NUMBERED_NAME.search(name)}
    faults = [
        at("english", number, f"it is called {name}") for number, name in NAMES.items()
        if name in named - NAMED_BY_PLACE
        and not words_of_name(name) & {stem(word) for word in re.findall(r"[A-Za-z0-9]+", ENGLISH[number])}
    ]
    assert_none(faults)
    assert NAMED_BY_PLACE <= named and len(named) > 450


def english_kind(text):
    """"label" (Every Word Has a Capital), "sentence", "either" where that cannot be told, or "mixed"."""
    words = re.findall(r"(?<!\. )(?<!-)(?<!^)\b[A-Za-z][\w/'-]*", re.sub(r"\(.*?\)|\".*?\"", "", text))
    words = [word for word in words if len(word) >= 4 and word not in OF_EITHER_KIND and word not in catalogues.COMMON_TERMS
             and not re.search("[A-Z]", word[1:].replace("-Up", ""))]
    capitals = {word[0].isupper() for word in words}
    return "either" if not capitals else "mixed" if len(capitals) > 1 else "label" if True in capitals else "sentence"


def test_english_texts_are_labels_or_sentences_as_their_names_say():
    faults = []
    for number, name in NAMES.items():
        text, kind = ENGLISH[number], english_kind(ENGLISH[number])
        is_sentence = re.search("^(Ask|Confirm)[A-Z]|(Failed|Refused)$", name)
        if kind == "mixed" or not re.match("[A-Zi.]", text):
            faults.append(at("english", number, "capitals"))
        if kind == "label" and (is_sentence or text.endswith((".", "?"))):
            faults.append(at("english", number, "a sentence with capitals, or a label with an end"))
        if kind == "sentence" and re.search("(Title|Section)$", name) and not text.endswith("."):
            faults.append(at("english", number, "a title without capitals"))
        if re.match("(Ask|Confirm)[A-Z]", name) and text.endswith("."):
            faults.append(at("english", number, "a question that ends like a notice"))
        if name.endswith("Failed") and not re.search(r"\b(not|failed)\b", text):
            faults.append(at("english", number, "a failure that sounds like success"))
        if re.search(r"\((y/n|Y/N)\)", text) and not re.search(r"\? \((y/n|Y/N)\)$", text):
            faults.append(at("english", number, "a question without its mark"))
    assert_none(faults)


@pytest.mark.parametrize("language", LANGUAGES)
def test_exchanged_neighbours_are_noticed(language):
    """The tests above would notice it, in nearly every case, if two texts of one language changed places."""
    unnoticed, total = [], 0
    for one, other in itertools.pairwise(sorted(NAMES)):
        texts = TEXTS[language]
        if texts[one] == texts[other]:
            continue
        total += 1
        for number, text in ((one, texts[other]), (other, texts[one])):
            if language == "english":
                noticed = any(list(catalogues.pair_faults(text, TEXTS[each][number], each)) for each in OTHERS)
            else:
                noticed = list(catalogues.pair_faults(ENGLISH[number], text, language))
            if noticed:
                break
        else:
            unnoticed.append(f"{language} {one} {texts[one]!r} and {other} {texts[other]!r}")
    assert total > 500
    assert len(unnoticed) <= total // 100, "\n".join(unnoticed)
