"""What the help of a spreadsheet must tell of the functions, by the command's catalogue."""
import json
import subprocess


def functions(command):
    catalogue = subprocess.run([command, "--catalogue"], capture_output=True, text=True, check=True).stdout
    return {about["name"]: about for about in json.loads(catalogue)["functions"]}


def of_argument(argument):
    """Meaning, unit and choices of an argument, in the order in which they stand."""
    choices = [f"{choice['value']:.15g} {choice['meaning']}" for choice in argument["choices"]]
    return [argument["meaning"], *([f" ({argument['unitName']})"] if argument["unitName"] else []), *choices]


def of_results(about):
    """Number and name of each result, where one is asked for."""
    return [f"{result['selector']} {result['name']}" for result in about["results"]] if about["resultArgument"] is not None else []


def untold(text, words):
    """Those words that the text does not have, one after another."""
    place, missing = 0, []
    for word in words:
        found = text.find(word, place)
        place = place if found < 0 else found + len(word)
        if found < 0:
            missing.append(word)
    return missing
