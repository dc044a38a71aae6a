// Folioscope report set "Standard": menu nodes and small page helpers.
// Plain ES3 so that the help viewer's browser engine runs it as well.

// Opens or closes one menu node; returns false so that the link is not followed.
function fsToggle(elementId, iconId) {
  var items = document.getElementById(elementId);
  var icon = document.getElementById(iconId);
  if (!items) return false;
  var open = items.style.display == "none";
  items.style.display = open ? "block" : "none";
  if (icon) icon.innerHTML = open ? "&minus;" : "+";
  return false;
}

// Hides the sections of a content page that stayed empty: a parameter
// table without rows, an example area without code, a return value block
// without type or description.
function fsPageLoaded() {
  var divs = document.getElementsByTagName("div");
  for (var i = 0; i < divs.length; i++) {
    var d = divs[i];
    if (d.className == "parameters") {
      var body = d.getElementsByTagName("tbody");
      if (body.length && body[0].getElementsByTagName("tr").length == 0) d.style.display = "none";
    } else if (d.className == "example" || d.className == "return-value" || d.className == "remarks-block") {
      var text = d.innerText || d.textContent || "";
      var heading = d.getElementsByTagName("h2");
      var headingText = heading.length ? (heading[0].innerText || heading[0].textContent || "") : "";
      if (text.replace(headingText, "").replace(/\s+/g, "") == "") d.style.display = "none";
    }
  }
}
