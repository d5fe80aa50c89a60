import { render } from "preact";
import { App } from "./frame/App";
import { keepFocus } from "./frame/keepFocus";
import { lineState } from "./state/app";
import "./style/colours.css";
import "./style/frame.css";
import "./style/controls.css";
import "./style/list.css";
import "./style/calls.css";
import "./style/details.css";
import "./style/views.css";
import "./style/windows.css";

const root = document.getElementById("page");
if (root) {
    render(<App />, root);
    keepFocus(root);
    lineState.start();
}
