#include "host/switch/scenario/DemoScenario.h"

namespace host {

std::string_view demoScenarioText() {
    static constexpr std::string_view text = R"(# A lively day at an extension.

wait 1s
call ann from 4711 "Ann Müller" ; ring ann ; wait 3s ; giveup ann            # missed
wait 1s
call zoe from +4915550100123 "Zoë Økland" ; ring zoe ; wait 1500ms ; answer zoe
wait 4s ; hangup zoe by caller                                               # received
wait 1s
dial bob to 4712 "Bob Fischer" ; wait 1s ; ring bob ; wait 2s ; connect bob
wait 2s ; hold bob ; wait 1s ; retrieve bob ; wait 1s ; hangup bob           # dialled, held for a moment
wait 1s
call ann from 4711 "Ann Müller" ; ring ann ; wait 3s ; giveup ann            # missed again: one entry, two calls
wait 1s
call secret from anonymous ; ring secret ; wait 3s ; giveup secret           # missed, an unknown caller
wait 500ms
dial busy to 4713 "Façade & Söhne" ; wait 800ms ; busy busy                  # dialled, busy
wait 1s ; callback 4713 "Façade & Söhne" because busy                        # to be called back when their line is free
wait 1s
call yamada from +81355550107 "山田 太郎" ; ring yamada ; wait 2s ; answer yamada
wait 3s ; hangup yamada                                                      # received
wait 1s
call ann from 4711 "Ann Müller" ; ring ann ; wait 1s ; answer ann ; wait 2s
consult bob from ann to 4712 "Bob Fischer" ; wait 500ms ; connect bob ; wait 2s
transfer ann to bob ; wait 2s ; hangup ann                                   # the two talk on without us
wait 1s
call office from 4720 "Reception" via 4700 "Hotline" because busy ; ring office
wait 3s ; giveup office                                                      # missed, redirected to us
wait 1s
dial jose to +49305550199 "José Álvarez" ; wait 1s ; ring jose ; wait 3s
noanswer jose                                                                # dialled, not answered
wait 1s
call ann from 4711 "Ann Müller" ; ring ann ; wait 1s ; answer ann
wait 3s ; hold ann by caller ; wait 1s ; retrieve ann by caller ; wait 1s ; hangup ann
wait 1s
dial zoe to +4915550100123 "Zoë Økland" ; wait 500ms ; connect zoe ; wait 2s
consult ann from zoe to 4711 "Ann Müller" ; wait 500ms ; connect ann ; wait 1s
join zoe ann ; wait 3s ; leave zoe by 4711 ; wait 1s ; leave zoe             # a conference of three
wait 1s
call nikos from +302105550111 "Νίκος Παππάς" ; ring nikos ; wait 2s
divert nikos to 205 "Front desk" reason noanswer ; wait 2s ; answer nikos
wait 2s ; hangup nikos by caller                                             # forwarded away
wait 1s
callback 4713 ringing ; wait 1s ; callback 4713 done ; wait 1s               # their line is free: the callback is over
call team from 4730 "Team line" ; ring team ; wait 2s ; elsewhere team       # another phone answered
wait 2s
)";
    return text;
}

}  // namespace host
