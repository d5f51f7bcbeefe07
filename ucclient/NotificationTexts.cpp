// The texts of notifications are few, so they are in a table: seldial-uc does not use Qt, whose
// translations the windows use, and gettext would need files at fixed paths.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

#include "ucclient/Notifications.h"

namespace seldial {
namespace {

constexpr std::array kLanguages{"de", "es", "fr", "nl", "pl"};

struct Text {
  const char* english;
  std::array<const char*, kLanguages.size()> others;  ///< in the order of kLanguages
};

constexpr Text kTexts[] = {
    {"Calling %1",
     {"%1 wird angerufen", "Llamando a %1", "Appel de %1", "%1 wordt gebeld",
      "Dzwonienie pod numer %1"}},
    {"Undo", {"Rückgängig", "Deshacer", "Annuler", "Ongedaan maken", "Cofnij"}},
    {"The call failed",
     {"Der Anruf ist fehlgeschlagen", "La llamada ha fallado", "L’appel a échoué",
      "Het bellen is mislukt", "Nie udało się zadzwonić"}},
    {"Nothing was dialled",
     {"Es wurde nichts gewählt", "No se ha marcado nada", "Rien n’a été composé",
      "Er is niets gebeld", "Nie wybrano żadnego numeru"}},
    {"There is no hot key",
     {"Es gibt kein Tastenkürzel", "No hay ningún atajo", "Il n’y a pas de raccourci",
      "Er is geen sneltoets", "Nie ma skrótu"}},
    {"the hot key %1 was refused: %2",
     {"das Tastenkürzel %1 wurde abgelehnt: %2", "el atajo %1 ha sido rechazado: %2",
      "le raccourci %1 a été refusé : %2", "de sneltoets %1 is geweigerd: %2",
      "skrót %1 został odrzucony: %2"}},
    {"hotkey not set (another program holds it, the keyboard has no such key, or there is no "
     "desktop)",
     {"ein anderes Programm hat es, die Tastatur hat diese Taste nicht, oder es gibt keine "
      "Arbeitsumgebung",
      "otro programa lo tiene, el teclado no tiene esa tecla o no hay escritorio",
      "un autre programme le détient, le clavier n’a pas cette touche, ou il n’y a pas de bureau",
      "een ander programma heeft hem, het toetsenbord heeft deze toets niet, of er is geen "
      "bureaublad",
      "zajął go inny program, klawiatura nie ma takiego klawisza albo nie ma pulpitu"}},
    {"nothing was selected",
     {"es war nichts markiert", "no había nada seleccionado", "rien n’était sélectionné",
      "er was niets geselecteerd", "nic nie było zaznaczone"}},
    {"the selection is too long to be a telephone number",
     {"der markierte Text ist zu lang für eine Telefonnummer",
      "la selección es demasiado larga para ser un número de teléfono",
      "la sélection est trop longue pour être un numéro de téléphone",
      "de selectie is te lang voor een telefoonnummer",
      "zaznaczony tekst jest zbyt długi jak na numer telefonu"}},
    {"there is no telephone number in the selection",
     {"im markierten Text ist keine Telefonnummer",
      "en la selección no hay ningún número de teléfono",
      "il n’y a pas de numéro de téléphone dans la sélection",
      "er staat geen telefoonnummer in de selectie",
      "w zaznaczonym tekście nie ma numeru telefonu"}},
    {"there is more than one telephone number in the selection",
     {"im markierten Text ist mehr als eine Telefonnummer",
      "en la selección hay más de un número de teléfono",
      "il y a plus d’un numéro de téléphone dans la sélection",
      "er staat meer dan één telefoonnummer in de selectie",
      "w zaznaczonym tekście jest więcej niż jeden numer telefonu"}},
    {"the telephone number is ambiguous",
     {"es ist nicht sicher, welches die Telefonnummer ist",
      "no está claro cuál es el número de teléfono",
      "il n’est pas certain quel est le numéro de téléphone",
      "het is niet zeker wat het telefoonnummer is", "nie jest pewne, co jest numerem telefonu"}},
    {"it was undone",
     {"der Anruf wurde rückgängig gemacht", "se ha deshecho", "l’appel a été annulé",
      "het is ongedaan gemaakt", "połączenie zostało cofnięte"}},
    {"the number cannot be dialled after a prefix",
     {"die Nummer kann nicht nach einer Vorwahl für die Amtsleitung gewählt werden",
      "el número no se puede marcar después de un prefijo",
      "le numéro ne peut pas être composé après un préfixe",
      "het nummer kan niet na een voorkiesnummer worden gebeld",
      "tego numeru nie można wybrać po prefiksie"}},
    {"the selection contains a NUL byte, which an argument cannot contain",
     {"der markierte Text enthält ein Nullbyte, das kein Argument haben kann",
      "la selección contiene un byte nulo, que ningún argumento puede tener",
      "la sélection contient un octet nul, qu’aucun argument ne peut avoir",
      "de selectie bevat een nulbyte, die geen argument kan hebben",
      "zaznaczony tekst zawiera bajt zerowy, którego żaden argument mieć nie może"}},
    {"the selection begins with a hyphen, so the program could take it for an option",
     {"der markierte Text beginnt mit einem Bindestrich, das Programm könnte ihn für eine Option "
      "halten",
      "la selección empieza con un guion y el programa podría tomarla por una opción",
      "la sélection commence par un trait d’union, le programme pourrait la prendre pour une "
      "option",
      "de selectie begint met een streepje, het programma zou haar voor een optie kunnen houden",
      "zaznaczony tekst zaczyna się od łącznika i program mógłby go uznać za opcję"}},
};

std::string valueOf(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr ? value : "";
}

/// The language of a locale: "de" for "de_AT.UTF-8@euro".
std::string languageName(const std::string& locale) {
  return locale.substr(0, locale.find_first_of("_.@"));
}

/// The locale for messages, from the first variable that is set.
std::string localeForMessages() {
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = valueOf(name);
    if (!value.empty()) return value;
  }
  return "";
}

/// The user's preferred languages, best first, such as "de", up to English.
std::vector<std::string> sessionLanguages() {
  const std::string locale = localeForMessages();
  std::vector<std::string> languages;
  if (locale.empty() || locale == "C" || locale == "POSIX" || locale.starts_with("C.")) return {};
  std::string list = valueOf("LANGUAGE");
  list = list.empty() ? locale : list;
  for (std::size_t begin = 0; begin <= list.size();) {
    const auto end = std::min(list.find(':', begin), list.size());
    const std::string language = languageName(list.substr(begin, end - begin));
    if (language == "en") break;  // the rest is less preferred than English
    languages.push_back(language);
    begin = end + 1;
  }
  return languages;
}

/// The translation, or English.
const char* inSessionLanguage(const Text& text) {
  for (const std::string& language : sessionLanguages()) {
    const auto* const found = std::find(kLanguages.begin(), kLanguages.end(), language);
    if (found != kLanguages.end())
      return text.others[static_cast<std::size_t>(found - kLanguages.begin())];
  }
  return text.english;
}

std::string replacePlaceholders(const std::string& text, const std::vector<std::string>& values) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t which = text[at] == '%' && at + 1 < text.size()
                                  ? static_cast<std::size_t>(text[at + 1] - '1')
                                  : values.size();
    if (which >= values.size()) {
      result += text[at];
    } else {
      result += values[which];
      ++at;
    }
  }
  return result;
}

}  // namespace

std::string translated(const std::string& english, const std::vector<std::string>& values) {
  const auto* const text = std::find_if(std::begin(kTexts), std::end(kTexts),
                                        [&](const Text& each) { return each.english == english; });
  return replacePlaceholders(text != std::end(kTexts) ? inSessionLanguage(*text) : english, values);
}

}  // namespace seldial
