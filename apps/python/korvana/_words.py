"""The words of the command line, as Python has them."""
import keyword
import re


def keyword_of(option):
    """The keyword of an option: max-iterations is max_iterations, continue is continue_."""
    name = option.replace("-", "_")
    return name + "_" if keyword.iskeyword(name) else name


def python_help(text):
    """The help of an option; what it says about files of the command line is left out."""
    return re.sub(r"; with -o: [^\]]*", "", python_text(text))


def python_text(text):
    """A text of the command line for Python: its options are keywords here."""
    return re.sub(r"(?<![\w-])--([a-z][a-z0-9-]*[a-z0-9])", lambda match: keyword_of(match.group(1)), text)
