import { render } from "preact";
import { App } from "./frame/App";
import { keepFocus } from "./frame/keepFocus";
import { connect } from "./state/connection";
import "./style/colours.css";
import "./style/base.css";
import "./style/controls.css";
import "./style/frame.css";
import "./style/calls.css";
import "./style/rows.css";
import "./style/person.css";
import "./style/live.css";
import "./style/views.css";
import "./style/statistics.css";
import "./style/windows.css";

const root = document.getElementById("page");
if (root) {
    render(<App />, root);
    keepFocus(root);
    connect();
}
